// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/jobs/separatoroutput.h"

#include "localservice/base/log.h"

#include <Poco/NumberParser.h>
#include <Poco/String.h>

#include <algorithm>

namespace localservice {

namespace {

constexpr std::size_t maxLineBytes = 4096;
constexpr std::size_t maxErrorBytes = 300;
constexpr std::string_view progressWord = "progress ";
constexpr std::string_view errorWord = "error: ";

} // namespace

SeparatorOutput::SeparatorOutput(std::atomic<double> &progress, Log log)
    : m_progress(progress)
    , m_log(std::move(log))
{ }

void SeparatorOutput::feed(std::string_view bytes)
{
    for (const char c : bytes) {
        if (c == '\n' || c == '\r')
            finish();
        else if (m_line.size() < maxLineBytes)
            m_line += c;
    }
}

void SeparatorOutput::finish()
{
    if (!m_line.empty())
        readLine(m_line);
    m_line.clear();
}

void SeparatorOutput::readLine(std::string_view line)
{
    double share = 0;
    if (line.starts_with(progressWord)
        && Poco::NumberParser::tryParseFloat(
            Poco::trim(std::string(line.substr(progressWord.size()))), share)) {
        m_progress = std::clamp(share, 0.0, 1.0);
    } else if (line.starts_with(errorWord)) {
        m_error = printable(line.substr(errorWord.size(), maxErrorBytes));
        m_log(line);
    } else {
        m_log(line);
    }
}

} // namespace localservice
