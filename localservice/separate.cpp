// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/base/paths.h"
#include "localservice/base/refusal.h"
#include "localservice/engine/separation.h"
#include "localservice/platform/arguments.h"
#include "localservice/platform/newfile.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <thread>

using namespace localservice;
namespace fs = std::filesystem;

namespace {

constexpr int usageExitCode = 2;
constexpr std::chrono::milliseconds progressInterval{250};

constexpr const char *help =
    "teko-separate: takes one instrument out of a song.\n\n"
    "Usage: teko-separate INPUT INSTRUMENT MAIN MIX\n\n"
    "  INPUT        a WAV file: 16 or 24 bit, or 32 bit floats\n"
    "  INSTRUMENT   guitar, vocals, piano, bass or drums\n"
    "  MAIN         the new file with the instrument alone\n"
    "  MIX          the new file with the rest\n\n"
    "Standard error shows lines \"progress SHARE\" (0 to 1), and \"error: "
    "SENTENCE\" when it fails, and \"low confidence (VALUE): ...\" when little is to be\n"
    "expected of the result.\n"
    "Exit codes: 0 done, 1 failed or interrupted, 2 wrong usage. Unless "
    "it is done, there are no results.\n";

JobControl control;

void cancel(int)
{
    control.cancelled = true;
}

// A file that this run has created, and that is deleted with the object unless it is kept.
class OwnFile final
{
public:
    explicit OwnFile(fs::path path)
        : m_path(std::move(path))
    {
        const std::error_code error = createNewFile(m_path);
        if (error == std::errc::file_exists)
            throw Refusal("The file " + utf8(m_path) + " exists already.");
        if (error)
            throw Refusal("The file " + utf8(m_path) + " cannot be created: " + error.message()
                          + ".");
    }
    OwnFile(const OwnFile &) = delete;
    OwnFile &operator=(const OwnFile &) = delete;
    ~OwnFile()
    {
        std::error_code ignored;
        if (!m_isKept)
            fs::remove(m_path, ignored);
    }

    [[nodiscard]] const fs::path &path() const { return m_path; }
    void keep() { m_isKept = true; }

private:
    fs::path m_path;
    bool m_isKept = false;
};

fs::path partOf(fs::path file)
{
    return file += ".part";
}

void reportProgress(const std::atomic<bool> &ended)
{
    while (!ended) {
        std::this_thread::sleep_for(progressInterval);
        std::fprintf(stderr, "progress %.3f\n", control.progress.load());
        std::fflush(stderr);
    }
}

std::optional<Confidence> separateInto(const SeparationTask &final)
{
    if (final.main == final.mix)
        throw Refusal("The two results need two files.");
    if (!fs::exists(final.input))
        throw Refusal("There is no file " + utf8(final.input) + ".");
    for (const fs::path &file : {final.main, final.mix}) {
        if (fs::exists(file))
            throw Refusal("The file " + utf8(file) + " exists already.");
    }
    const OwnFile mainPart(partOf(final.main));
    const OwnFile mixPart(partOf(final.mix));
    const std::optional<Confidence> confidence =
        separate({final.input, final.instrument, mainPart.path(), mixPart.path()}, control);
    if (!confidence)
        return std::nullopt;
    // Renaming replaces what has come to be there meanwhile, unless the names are taken before.
    OwnFile main(final.main);
    OwnFile mix(final.mix);
    fs::rename(mainPart.path(), main.path());
    fs::rename(mixPart.path(), mix.path());
    main.keep();
    mix.keep();
    return confidence;
}

void reportConfidence(Part instrument, Confidence confidence)
{
    const std::string word(instrumentWords[static_cast<std::size_t>(instrument)]);
    if (confidence.isLow())
        std::fprintf(stderr, "low confidence (%.2f): little in this song sounds like %s\n",
                     static_cast<double>(confidence.value), word.c_str());
}

int run(const SeparationTask &task)
{
    std::signal(SIGINT, cancel);
    std::signal(SIGTERM, cancel);
    std::atomic<bool> ended = false;
    std::thread reporter(reportProgress, std::cref(ended));
    int code = EXIT_FAILURE;
    try {
        if (const std::optional<Confidence> confidence = separateInto(task)) {
            code = EXIT_SUCCESS;
            reportConfidence(task.instrument, *confidence);
        }
    } catch (const std::exception &error) {
        std::fprintf(stderr, "error: %s\n", error.what());
    }
    ended = true;
    reporter.join();
    return code;
}

int explainUsage(const char *sentence)
{
    std::fprintf(stderr, "error: %s\n\n%s", sentence, help);
    return usageExitCode;
}

} // namespace

int main(int argc, char **argv)
{
    const std::vector<std::string> words = commandLineWords(argc, argv);
    if (words == std::vector<std::string>{"--help"})
        return std::fputs(help, stdout) < 0 ? EXIT_FAILURE : EXIT_SUCCESS;
    if (words == std::vector<std::string>{"--version"})
        return std::puts("teko-separate " TEKO_VERSION) < 0 ? EXIT_FAILURE : EXIT_SUCCESS;
    if (words.size() != 4)
        return explainUsage("Four arguments are needed.");
    const std::optional<Part> instrument = instrumentFromWord(words[1]);
    if (!instrument)
        return explainUsage("There is no such instrument.");
    return run(
        {pathFromUtf8(words[0]), *instrument, pathFromUtf8(words[2]), pathFromUtf8(words[3])});
}
