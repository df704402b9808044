// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "service/replies.h"

#include <QCoreApplication>
#include <QStringList>

#include <cmath>

namespace {

constexpr qsizetype maxCharacters = 1500;
constexpr qsizetype maxLines = 25;
constexpr double sizeUnknown = 95.0;
constexpr double almostDone = 99.8;

struct Replies
{
    Q_DECLARE_TR_FUNCTIONS(Replies)
};

/// Where the line after the last one that is shown begins, or the end of the text.
qsizetype endOfShownLines(const QString &text)
{
    qsizetype end = -1;
    for (qsizetype line = 0; line < maxLines; ++line) {
        end = text.indexOf(u'\n', end + 1);
        if (end < 0)
            return text.size();
    }
    return end;
}

} // namespace

int songId(const QString &body)
{
    return body.toInt();
}

Remains remainsReply(const QString &body)
{
    const int value = body.toInt();
    if (value == -1)
        return {Remains::Kind::Ready, 0};
    if (value != 0 || body == QLatin1String("0"))
        return {Remains::Kind::Seconds, value};
    return {Remains::Kind::Refusal, 0};
}

std::optional<ResultUrls> resultUrls(const QString &body)
{
    const QStringList parts = body.split(u'|');
    if (parts.size() != 2)
        return {};
    return ResultUrls{parts[0].trimmed(), parts[1].trimmed()};
}

QUrl resultUrl(const QUrl &asked, const QString &location)
{
    const QUrl url = location.isEmpty() ? QUrl() : asked.resolved(QUrl(location));
    const bool isUnsafe =
        asked.scheme() == QLatin1String("https") && url.scheme() == QLatin1String("http");
    return isUnsafe ? QUrl() : url;
}

int filesLeft(const QString &body)
{
    bool isNumber = false;
    const int value = body.toInt(&isNumber);
    return isNumber && value >= 0 ? value : -1;
}

std::optional<double> uploadPercent(qint64 sent, qint64 total)
{
    if (total <= 0)
        return {};
    return std::floor(double(sent) / double(total) * 1000) / 10;
}

double downloadPercent(qint64 received, qint64 total, qint64 expectedSize)
{
    const qint64 divisor = total < 1 ? expectedSize : total;
    if (divisor < 1)
        return sizeUnknown;
    const double percent = std::trunc(double(received) / double(divisor) * 100);
    return percent >= 100 ? almostDone : percent;
}

QString truncatedForDisplay(const QString &text)
{
    qsizetype length = qMin(endOfShownLines(text), maxCharacters);
    if (length >= text.size())
        return text;
    if (length > 0 && text[length - 1].isHighSurrogate())
        --length;
    return text.left(length) + Replies::tr("\n\n(The rest of the text is left out.)");
}
