// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/options.h"

#include "localservice/base/paths.h"
#include "localservice/http/clientaddress.h"
#include "localservice/jobs/commandseparator.h"
#include "localservice/platform/folders.h"

#include <Poco/Net/IPAddress.h>

#include <array>
#include <charconv>
#include <functional>
#include <set>
#include <string_view>
#include <thread>

namespace localservice {

namespace {

constexpr int maxWorkers = 256;
constexpr int maxDays = 36500;
constexpr int maxFiles = 1000000;
constexpr int maxMegabytes = 1024 * 1024;
constexpr int defaultUploadMegabytes = 4096;
constexpr int defaultAccountMegabytes = 20480;
constexpr std::uint64_t megabyte = 1048576;

int parseNumber(const std::string &option, const std::string &text, int minimum, int maximum)
{
    int number = 0;
    const char *const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || stop != end || number < minimum || number > maximum)
        throw UsageError(option + " takes a number from " + std::to_string(minimum) + " to "
                         + std::to_string(maximum) + ", not \"" + text + "\".");
    return number;
}

void readListen(Options &options, const std::string &text)
{
    const std::size_t colon = text.rfind(':');
    if (colon == std::string::npos || colon == 0)
        throw UsageError("--listen takes ADDRESS:PORT, not \"" + text + "\".");
    std::string host = text.substr(0, colon);
    // An IPv6 address is in brackets, to keep its colons from the port's.
    if (host.front() == '[' && host.back() == ']')
        host = host.substr(1, host.size() - 2);
    options.server.host = host;
    options.server.port =
        static_cast<std::uint16_t>(parseNumber("--listen", text.substr(colon + 1), 0, UINT16_MAX));
}

void readSeparator(Options &options, const std::string &text)
{
    try {
        options.separator = splitCommand(text);
    } catch (const std::invalid_argument &error) {
        throw UsageError(std::string("--separator: ") + error.what());
    }
}

void readPublicUrl(Options &options, const std::string &text)
{
    if (!isWebAddress(text) || text.find_first_of("?#") != std::string::npos)
        throw UsageError("--public-url takes an http or https address, not \"" + text + "\".");
    options.server.publicUrl = text.substr(0, text.find_last_not_of('/') + 1);
}

void readTrustedProxy(Options &options, const std::string &text)
{
    Poco::Net::IPAddress address;
    if (!Poco::Net::IPAddress::tryParse(text, address))
        throw UsageError("--trusted-proxy takes an IP address, not \"" + text + "\".");
    options.server.trustedProxy = unmapped(address).toString();
}

std::filesystem::path readPath(const std::string &option, const std::string &text)
{
    if (text.empty())
        throw UsageError(option + " takes a path.");
    return pathFromUtf8(text);
}

void readSubscription(Options &options, const std::string &text)
{
    if (text == "active")
        options.licence.subscription = Subscription::Active;
    else if (text == "none")
        options.licence.subscription = Subscription::None;
    else if (text == "expired")
        options.licence.subscription = Subscription::Expired;
    else
        throw UsageError("--subscription takes active, none or expired, not \"" + text + "\".");
}

void readRegistration(Options &options, const std::string &text)
{
    if (text != "open" && text != "closed")
        throw UsageError("--registration takes open or closed, not \"" + text + "\".");
    options.licence.takesRegistrations = text == "open";
}

struct Option
{
    std::string_view name;
    std::string_view value; ///< what the help calls its value; "" for a switch
    std::string_view help;
    std::function<void(Options &, const std::string &)> read;
};

const std::vector<Option> allOptions = {
    {"--listen", "ADDRESS:PORT", "Where to listen (default 127.0.0.1:8750). Port 0: any free one.",
     readListen},
    {"--data", "DIR", "Where to keep uploads, results and accounts.",
     [](Options &o, const std::string &text) { o.data = readPath("--data", text); }},
    {"--public-url", "URL", "The service's address behind a reverse proxy.", readPublicUrl},
    {"--trusted-proxy", "ADDRESS",
     "The reverse proxy's IP address: clients are counted by\n"
     "its header X-Forwarded-For.",
     readTrustedProxy},
    {"--tls-cert", "FILE", "Serve HTTPS with this certificate and its chain (PEM).",
     [](Options &o, const std::string &text) {
         o.server.certificate = readPath("--tls-cert", text);
     }},
    {"--tls-key", "FILE", "The certificate's private key (PEM).",
     [](Options &o, const std::string &text) { o.server.key = readPath("--tls-key", text); }},
    {"--embedded", "",
     "Serve one program: choose a free port, print it and the\n"
     "local account in one JSON line on standard output, and\n"
     "end when standard input ends.",
     [](Options &o, const std::string &) { o.embedded = true; }},
    {"--separator", "COMMAND",
     "Run a program of your own for each song. {input},\n"
     "{instrument}, {main} and {mix} are filled in.",
     readSeparator},
    {"--workers", "N", "How many songs at a time (default: one for each core).",
     [](Options &o, const std::string &text) {
         o.workers = parseNumber("--workers", text, 1, maxWorkers);
     }},
    {"--daily-limit", "N", "Files that an account may send a day (default 0: no limit).",
     [](Options &o, const std::string &text) {
         o.licence.filesPerDay = parseNumber("--daily-limit", text, 0, maxFiles);
     }},
    {"--subscription", "STATE", "The accounts' subscription: active (default), none or\nexpired.",
     readSubscription},
    {"--account-mb", "N",
     "What an account may keep on the disk, in MiB (default\n"
     "20480; 0: no limit, which is the default with\n"
     "--embedded).",
     [](Options &o, const std::string &text) {
         o.licence.accountBytes = static_cast<std::int64_t>(megabyte)
             * parseNumber("--account-mb", text, 0, maxMegabytes);
     }},
    {"--registration", "STATE",
     "Whether anybody may register an account: open (default)\n"
     "or closed (default with --embedded).",
     readRegistration},
    {"--keep-days", "N", "How long to keep uploads and results (default 30).",
     [](Options &o, const std::string &text) {
         o.keepDays = parseNumber("--keep-days", text, 1, maxDays);
     }},
    {"--max-upload-mb", "N", "The largest file to take, in MiB (default 4096).",
     [](Options &o, const std::string &text) {
         o.maxUploadBytes = megabyte * parseNumber("--max-upload-mb", text, 1, maxMegabytes);
     }},
    {"--help", "", "Show this text.", [](Options &o, const std::string &) { o.showHelp = true; }},
    {"--version", "", "Show the version.",
     [](Options &o, const std::string &) { o.showVersion = true; }},
};

const Option &optionNamed(const std::string &name)
{
    for (const Option &option : allOptions) {
        if (option.name == name)
            return option;
    }
    throw UsageError("There is no option \"" + name + "\".");
}

Options defaults()
{
    Options options;
    options.workers = static_cast<int>(std::max(1U, std::thread::hardware_concurrency()));
    options.maxUploadBytes = megabyte * defaultUploadMegabytes;
    options.licence.accountBytes = std::int64_t{megabyte} * defaultAccountMegabytes;
    const std::filesystem::path folder = userDataFolder();
    options.data = folder.empty() ? "teko-service-data" : folder / "TEKO" / "service";
    return options;
}

} // namespace

Options parseOptions(const std::vector<std::string> &arguments)
{
    Options options = defaults();
    std::set<std::string> given;
    options.showStatus = !arguments.empty() && arguments.front() == "status";
    for (std::size_t i = options.showStatus ? 1 : 0; i < arguments.size(); ++i) {
        const std::size_t equals = arguments[i].find('=');
        const std::string name = arguments[i].substr(0, equals);
        const Option &option = optionNamed(name);
        const bool attached = equals != std::string::npos;
        if (option.value.empty() && attached)
            throw UsageError(name + " takes no value.");
        if (!option.value.empty() && !attached && i + 1 == arguments.size())
            throw UsageError(name + " takes a value: " + std::string(option.value) + ".");
        std::string value;
        if (!option.value.empty())
            value = attached ? arguments[i].substr(equals + 1) : arguments[++i];
        option.read(options, value);
        given.insert(name);
    }
    if (options.embedded && !given.contains("--listen"))
        options.server.port = 0;
    if (options.embedded && !given.contains("--registration"))
        options.licence.takesRegistrations = false;
    if (options.embedded && !given.contains("--account-mb"))
        options.licence.accountBytes = 0;
    if (options.server.certificate.empty() != options.server.key.empty())
        throw UsageError("--tls-cert and --tls-key go together.");
    return options;
}

std::string helpText()
{
    constexpr std::size_t helpColumn = 24;
    std::string text = "teko-service: takes songs apart for TEKO.\n\n"
                       "Usage: teko-service [OPTION VALUE]…\n"
                       "       teko-service status [--data DIR]\n\n";
    for (const Option &option : allOptions) {
        std::string line = "  " + std::string(option.name);
        line.append(option.value.empty() ? "" : " ").append(option.value);
        line.append(line.size() < helpColumn ? helpColumn - line.size() : 1, ' ');
        for (const char c : option.help) {
            line += c;
            if (c == '\n')
                line.append(helpColumn, ' ');
        }
        text += line + "\n";
    }
    return text
        + "\nExamples:\n"
          "  teko-service\n"
          "  teko-service --listen 0.0.0.0:8750 --data /srv/teko --daily-limit 10\n"
          "  teko-service --separator 'mysplit --stem {instrument} {input} {main} {mix}'\n\n"
          "It ends on Ctrl+C, finishing cleanly: interrupted songs go on at the next start.\n";
}

} // namespace localservice
