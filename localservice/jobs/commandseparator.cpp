// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/jobs/commandseparator.h"

#include "localservice/base/log.h"
#include "localservice/base/paths.h"
#include "localservice/base/refusal.h"
#include "localservice/engine/wavfile.h"
#include "localservice/jobs/separatoroutput.h"
#include "localservice/platform/childprocess.h"
#include "localservice/platform/folders.h"

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

bool isResultOf(const SeparationTask &task, const fs::path &file)
{
    const WavShape wanted = WavReader(task.input).shape();
    try {
        const WavShape shape = WavReader(file).shape();
        return shape.sampleRate == wanted.sampleRate && shape.frames == wanted.frames;
    } catch (const Refusal &) {
        return false;
    }
}

std::vector<std::string> commandOf(const std::vector<std::string> &words,
                                   const SeparationTask &task)
{
    const std::string instrument(instrumentWords[static_cast<std::size_t>(task.instrument)]);
    const Placeholders placeholders = {{{"{input}", utf8(task.input)},
                                        {"{instrument}", instrument},
                                        {"{main}", utf8(task.main)},
                                        {"{mix}", utf8(task.mix)}}};
    std::vector<std::string> command;
    command.reserve(words.size());
    for (const std::string &word : words)
        command.push_back(withPlaceholders(word, placeholders));
    return command;
}

bool runSeparator(const std::vector<std::string> &command, const SeparationTask &task,
                  JobControl &control)
{
    const std::string program = utf8(pathFromUtf8(command.front()).filename());
    const std::string prefix = task.name + ": " + program + ": ";
    SeparatorOutput output(control.progress,
                           [&prefix](std::string_view line) { log(prefix + std::string(line)); });
    const ChildResult result = runChild(command, control.cancelled,
                                        [&output](std::string_view bytes) { output.feed(bytes); });
    output.finish();
    switch (result) {
    case ChildResult::Cancelled:
        return false;
    case ChildResult::NotStarted:
        throw Refusal("The separator program could not be started.");
    case ChildResult::Failed:
        if (!output.error().empty())
            throw Refusal(output.error());
        throw SeparatorFailed("The separator program failed.");
    case ChildResult::Succeeded:
        break;
    }
    if (!isResultOf(task, task.main) || !isResultOf(task, task.mix))
        throw Refusal("The separator program gave no usable result.");
    return true;
}

void checkPlaceholders(const std::vector<std::string> &words)
{
    for (const std::string &word : words) {
        for (const char *open : {"{input", "{instrument", "{main", "{mix"}) {
            if (word.ends_with(open))
                throw std::invalid_argument(std::string("There is no } after ") + open + ".");
        }
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
    checkPlaceholders(words);
    return words;
}

SeparateFunction separateByCommand(std::vector<std::string> words)
{
    return [words = std::move(words)](const SeparationTask &task, JobControl &control) {
        return runSeparator(commandOf(words, task), task, control);
    };
}

std::vector<std::string> builtInCommand()
{
    return {utf8(siblingProgram("teko-separate")), "{input}", "{instrument}", "{main}", "{mix}"};
}

} // namespace localservice
