// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/base/log.h"
#include "localservice/base/paths.h"
#include "localservice/base/secrets.h"
#include "localservice/platform/arguments.h"
#include "localservice/platform/output.h"
#include "localservice/platform/permissions.h"
#include "localservice/platform/termination.h"
#include "localservice/service.h"

#include <Poco/Exception.h>
#include <Poco/Net/Net.h>

#include <cstdio>
#include <cstdlib>
#include <memory>

using namespace localservice;

namespace {

constexpr int usageExitCode = 2;
constexpr int maxEmbedded = 16;
constexpr std::size_t statusKeyBytes = 32;

std::filesystem::path numbered(std::filesystem::path folder, int number)
{
    folder += "-";
    return folder += std::to_string(number);
}

// A folder in use belongs to another running program of the same user: an embedded service then
// takes the next one, "service-2" and so on, with a log there: on Windows two programs that write
// into one file overwrite each other's lines.
std::unique_ptr<Service> start(Options options)
{
    const std::filesystem::path folder = options.data;
    for (int number = 2;; ++number) {
        try {
            auto service = std::make_unique<Service>(options);
            if (options.data != folder)
                appendErrorsTo(DataFolder::logFile(options.data));
            return service;
        } catch (const DatabaseBusy &) {
            if (!options.embedded || number > maxEmbedded)
                throw;
            options.data = numbered(folder, number);
        }
    }
}

// The folders that other programs of the same user have used meanwhile, and that are no longer
// used.
void discardAbandonedBeside(const std::filesystem::path &folder)
{
    for (int number = 2; number <= maxEmbedded; ++number) {
        if (!std::filesystem::exists(numbered(folder, number)))
            continue;
        try {
            discardAbandoned(numbered(folder, number));
        } catch (const DatabaseBusy &) {
            continue; // another program's
        } catch (const std::exception &error) {
            log("What is left in " + utf8(numbered(folder, number))
                + " stays there: " + error.what());
        }
    }
}

void run(Options options)
{
    restrictNewFilesToOwner();
    Termination termination(options.embedded);
    initialiseSecrets();
    options.server.statusKey = randomHex(statusKeyBytes);
    const std::unique_ptr<Service> service = start(options);
    log("Listening on " + service->url());
    if (service->isOpenToNetworkWithoutTls())
        log("WARNING: without TLS everybody on the network can read passwords and music. See "
            "--tls-cert, or listen on 127.0.0.1 behind a reverse proxy.");
    if (options.embedded) {
        std::printf("%s\n", service->startLine().c_str());
        std::fflush(stdout);
        discardAbandonedBeside(options.data);
    }
    termination.wait();
    log("Shutting down");
}

int fail(const std::string &message, int code)
{
    std::fprintf(stderr, "teko-service: %s\n", message.c_str());
    return code;
}

} // namespace

int main(int argc, char **argv)
{
    try {
        // On Windows a static build of the library does not do that by itself.
        Poco::Net::initializeNetwork();
        const Options options = parseOptions(commandLineWords(argc, argv));
        if (options.showHelp)
            std::fputs(helpText().c_str(), stdout);
        else if (options.showVersion)
            std::puts("teko-service " TEKO_VERSION);
        else if (options.showStatus)
            std::fputs(fetchStatus(DataFolder::controlFile(options.data)).c_str(), stdout);
        else
            run(options);
        return EXIT_SUCCESS;
    } catch (const UsageError &error) {
        return fail(std::string(error.what()) + "\nTry \"teko-service --help\".", usageExitCode);
    } catch (const Poco::Exception &error) {
        return fail(error.displayText(), EXIT_FAILURE);
    } catch (const std::exception &error) {
        return fail(error.what(), EXIT_FAILURE);
    }
}
