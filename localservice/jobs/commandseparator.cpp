// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/jobs/commandseparator.h"

#include "localservice/base/paths.h"
#include "localservice/base/refusal.h"
#include "localservice/engine/wavfile.h"
#include "localservice/platform/childprocess.h"

#include <array>
#include <stdexcept>
#include <utility>

namespace fs = std::filesystem;

namespace localservice {

namespace {

using Placeholders = std::array<std::pair<std::string, std::string>, 4>;

std::string withPlaceholders(std::string word, const Placeholders &placeholders)
{
    std::string result;
    for (std::size_t at = 0; at < word.size();) {
        std::size_t taken = 0;
        for (const auto &[name, value] : placeholders) {
            if (word.compare(at, name.size(), name) == 0) {
                result += value;
                taken = name.size();
            }
        }
        if (taken == 0)
            result += word[at];
        at += std::max<std::size_t>(taken, 1);
    }
    return result;
}

// A demo is a file that holds only the beginning: the program needs no option for it.
fs::path inputOf(const SeparationTask &task)
{
    WavReader reader(task.input);
    WavShape shape = reader.shape();
    if (framesToTake(task, shape) == shape.frames)
        return task.input;
    shape.frames = framesToTake(task, shape);
    fs::path file = task.main.parent_path() / "beginning.wav";
    WavWriter writer(file, shape);
    std::vector<std::int32_t> block(static_cast<std::size_t>(shape.channels) * 4096);
    for (std::int64_t left = shape.frames; left > 0;) {
        const auto frames = std::min<std::int64_t>(left, 4096);
        const std::span<std::int32_t> part =
            std::span(block).first(static_cast<std::size_t>(frames * shape.channels));
        if (reader.read(part) != frames)
            throw Refusal("The uploaded file can no longer be read.");
        writer.write(part);
        left -= frames;
    }
    writer.finish();
    return file;
}

void checkResult(const fs::path &file, const SeparationTask &task)
{
    const WavShape wanted = WavReader(task.input).shape();
    try {
        const WavShape got = WavReader(file).shape();
        if (got.sampleRate != wanted.sampleRate || got.frames != framesToTake(task, wanted))
            throw Refusal("The separator program gave a result of another length.");
    } catch (const Refusal &) {
        throw Refusal("The separator program gave no usable result.");
    }
}

} // namespace

std::vector<std::string> splitCommand(std::string_view command)
{
    std::vector<std::string> words;
    char quote = 0;
    bool inWord = false;
    for (const char c : command) {
        if (quote == 0 && (c == ' ' || c == '\t')) {
            inWord = false;
            continue;
        }
        if (!inWord)
            words.emplace_back();
        inWord = true;
        if (quote == 0 && (c == '"' || c == '\''))
            quote = c;
        else if (c == quote)
            quote = 0;
        else
            words.back() += c;
    }
    if (quote != 0)
        throw std::invalid_argument("A quotation mark of the command is not closed.");
    if (words.empty() || words.front().empty())
        throw std::invalid_argument("The command is empty.");
    return words;
}

SeparateFunction separateByCommand(std::vector<std::string> words)
{
    return [words = std::move(words)](const SeparationTask &task, JobControl &control) {
        const fs::path input = inputOf(task);
        const std::string instrument(instrumentWords[static_cast<std::size_t>(task.instrument)]);
        const Placeholders placeholders = {{{"{input}", utf8(input)},
                                            {"{instrument}", instrument},
                                            {"{main}", utf8(task.main)},
                                            {"{mix}", utf8(task.mix)}}};
        std::vector<std::string> command;
        for (const std::string &word : words)
            command.push_back(withPlaceholders(word, placeholders));
        switch (runChild(command, control.cancelled)) {
        case ChildResult::Cancelled:
            return false;
        case ChildResult::NotStarted:
            throw Refusal("The separator program could not be started.");
        case ChildResult::Failed:
            throw Refusal("The separator program failed.");
        case ChildResult::Succeeded:
            break;
        }
        checkResult(task.main, task);
        checkResult(task.mix, task);
        if (input != task.input)
            fs::remove(input);
        return true;
    };
}

} // namespace localservice
