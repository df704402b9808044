// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
// Takes ffmpeg's place in tests. FAKE_LOG names a file that gets the arguments of each run as
// one JSON array a line; FAKE_DO says what to do, see behaviours() below.
#include <QByteArray>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QStringList>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <map>
#include <thread>

namespace {

using namespace std::chrono_literals;

QStringList argumentList(int argc, char **argv)
{
    QStringList list;
    for (int i = 1; i < argc; ++i)
        list << QString::fromLocal8Bit(argv[i]);
    return list;
}

void record(const QStringList &arguments)
{
    QFile log(qEnvironmentVariable("FAKE_LOG"));
    if (log.open(QIODevice::Append))
        log.write(
            QJsonDocument(QJsonArray::fromStringList(arguments)).toJson(QJsonDocument::Compact)
            + '\n');
}

int writeOutput(const QString &path, const QByteArray &content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() ? 0 : 1;
}

/// Ends with an error in the middle of its work.
int cutOff(const QString &path)
{
    writeOutput(path, "partial");
    return 1;
}

/// Grows the output until it is ended from outside, at the latest after a minute.
int writeSlowly(const QString &path)
{
    for (int i = 0; i < 3000; ++i) {
        QFile file(path);
        if (!file.open(QIODevice::Append) || file.write("partial ") != 8)
            return 1;
        file.close();
        std::this_thread::sleep_for(20ms);
    }
    return 0;
}

int hang(const QString &path)
{
    std::signal(SIGTERM, SIG_IGN);
    return writeSlowly(path);
}

int flood(const QString &path)
{
    const QByteArray chunk(1 << 20, 'x');
    for (int i = 0; i < 300; ++i) {
        for (std::FILE *stream : {stdout, stderr})
            std::fwrite(chunk.constData(), 1, std::size_t(chunk.size()), stream);
    }
    return writeOutput(path, "flooded");
}

/// Waits for an answer; the end of the input is one.
int ask(const QString &path)
{
    std::puts("Overwrite? [y/N]");
    return writeOutput(path, std::getchar() == EOF ? "no answer" : "answered");
}

/// Hangs without touching the output.
int hangAside(const QString &path)
{
    return hang(path + QStringLiteral(".aside"));
}

std::map<QByteArray, std::function<int(const QString &)>> behaviours()
{
    return {{"", [](const QString &path) { return writeOutput(path, "converted"); }},
            {"cut off", cutOff},
            {"cut off mix",
             [](const QString &path) {
                 return path.contains(QStringLiteral("Mix")) ? cutOff(path)
                                                             : writeOutput(path, "converted");
             }},
            {"no picture",
             [](const QString &path) {
                 return path == QStringLiteral("-") ? 1 : writeOutput(path, "converted");
             }},
            {"hang", hang},
            {"hang aside", hangAside},
            {"slow", writeSlowly},
            {"flood", flood},
            {"ask", ask},
            {"crash", [](const QString &) -> int { std::abort(); }}};
}

} // namespace

int main(int argc, char **argv)
{
    const QStringList arguments = argumentList(argc, argv);
    record(arguments);
    if (arguments.isEmpty())
        return 1;
    const QString output = arguments.last();
    const QByteArray wanted = qgetenv("FAKE_DO");
    const bool mayOverwrite = arguments.contains(QStringLiteral("-y"));
    if (wanted.isEmpty() && !mayOverwrite && QFile::exists(output))
        return 1;
    const auto table = behaviours();
    const auto behaviour = table.find(wanted);
    return behaviour == table.end() ? 2 : behaviour->second(output);
}
