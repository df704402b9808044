// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/http/fields.h"

#include <Poco/TextIterator.h>
#include <Poco/UTF8Encoding.h>

#include <algorithm>

namespace localservice {

namespace {

int digit(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    throw BadRequest("The form is not encoded properly.");
}

std::string decoded(std::string_view text)
{
    std::string result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            result += text[i] == '+' ? ' ' : text[i];
            continue;
        }
        if (text.size() - i < 3)
            throw BadRequest("The form is not encoded properly.");
        result += static_cast<char>(digit(text[i + 1]) * 16 + digit(text[i + 2]));
        i += 2;
    }
    return result;
}

} // namespace

Fields Fields::fromForm(std::string_view body)
{
    Fields fields;
    while (!body.empty()) {
        const std::string_view item = body.substr(0, body.find('&'));
        body.remove_prefix(std::min(item.size() + 1, body.size()));
        const std::size_t equals = std::min(item.find('='), item.size());
        if (item.empty())
            continue;
        fields.append(decoded(item.substr(0, equals)),
                      decoded(item.substr(std::min(equals + 1, item.size()))));
    }
    fields.checkText();
    return fields;
}

const std::string &Fields::operator[](std::string_view name) const
{
    static const std::string none;
    const auto found = m_texts.find(name);
    return found == m_texts.end() ? none : found->second;
}

void Fields::append(std::string_view name, std::string_view text)
{
    m_bytes += name.size() + text.size();
    if (m_bytes > maxBytes)
        throw BadRequest("The form is too large.");
    if (text.find('\0') != std::string_view::npos)
        throw BadRequest("The form holds a null character.");
    m_texts[std::string(name)] += text;
    if (m_texts.size() > maxFields)
        throw BadRequest("The form has too many fields.");
}

void Fields::checkText() const
{
    for (const auto &[name, text] : m_texts) {
        if (!isText(name) || !isText(text))
            throw BadRequest("The form is not text in UTF-8.");
    }
}

bool Fields::isText(std::string_view text)
{
    const Poco::UTF8Encoding utf8;
    const std::string copy(text);
    const Poco::TextIterator end(copy);
    for (Poco::TextIterator at(copy, utf8); at != end; ++at) {
        if (*at <= 0)
            return false;
    }
    return true;
}

std::string baseName(std::string_view path)
{
    const std::size_t slash = path.find_last_of("/\\");
    return std::string(slash == std::string_view::npos ? path : path.substr(slash + 1));
}

} // namespace localservice
