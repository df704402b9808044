// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/base/refusal.h"
#include "localservice/engine/cueweights.h"
#include "localservice/engine/separation.h"
#include "sounds.h"
#include "tests/support/rows.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <fstream>
#include <numeric>
#include <set>
#include <thread>

using namespace localservice;

using Voice = std::function<double(qint64, int)>;

// A tone with overtones, whose pitch trembles six times a second by a share.
static double tone(double hertz, qint64 frame, double tremble)
{
    const double time = double(frame) / 44100;
    const double phase = 2 * std::numbers::pi
        * (hertz * time - hertz * tremble * std::cos(2 * std::numbers::pi * 6 * time) / 38);
    double sum = 0;
    for (int number = 1; number <= 8; ++number)
        sum += std::sin(number * phase) / number;
    return 0.3 * sum;
}

// Two strokes a second on a drum: noise that decays.
static double stroke(qint64 frame, int)
{
    const double noise = std::remainder(std::sin(double(frame)) * 43758.5, 1.0);
    return 2 * noise * std::exp(-double(frame % 22050) / 2000);
}

class TestSeparation final : public TestCase
{
    Q_OBJECT

private slots:
    void resultsAddUpToTheInput_data()
    {
        const Rows<WavShape, Voice> add;
        const Voice noise = [random = QRandomGenerator(1)](qint64, int) mutable {
            return random.generateDouble() * 2 - 1;
        };
        const Voice chord = [](qint64 frame, int channel) {
            return sine(220, frame, 44100) * (channel % 2 + 1) / 2 + sine(3000, frame, 44100) / 2;
        };
        const Voice square = [](qint64 frame, int) { return frame / 50 % 2 ? 1.0 : -1.0; };
        add("mono noise", {1, 44100, 16, 44100}, noise);
        add("stereo chord", {2, 48000, 16, 50001}, chord);
        add("six channels", {6, 44100, 16, 12345}, chord);
        add("24 bit", {2, 44100, 24, 30000}, noise);
        add("8 kHz", {1, 8000, 16, 9999}, chord);
        add("96 kHz", {2, 96000, 24, 30000}, chord);
        add("odd rate", {2, 12347, 16, 7001}, noise);
        add("full-scale square", {2, 44100, 16, 44100}, square);
        add("silence", {2, 44100, 16, 20000}, [](qint64, int) { return 0.0; });
        add("one sample", {1, 44100, 16, 1}, square);
        add("exactly one hop", {2, 44100, 16, 1024}, noise);
    }

    void resultsAddUpToTheInput()
    {
        const auto [shape, voice] = fetchRow<WavShape, Voice>();
        const std::vector<std::int32_t> input = soundOf(shape, voice);
        writeWav(at("in.wav"), shape, input);
        for (const Part part : {Part::Vocals, Part::Drums, Part::Guitar}) {
            JobControl control;
            QVERIFY(separate(task(part), control).has_value());
            QCOMPARE(WavReader(at("main.wav")).shape(), shape);
            const std::vector<std::int32_t> main = readWav(at("main.wav"));
            std::vector<std::int32_t> sum = readWav(at("mix.wav"));
            std::transform(sum.begin(), sum.end(), main.begin(), sum.begin(), std::plus<>());
            QCOMPARE(sum, input);
            // An instrument that takes nothing or everything would add up as well.
            if (energyOf(input) == 0)
                QCOMPARE(energyOf(main), 0.0);
        }
    }

    void splitNeverLeavesTheDepth()
    {
        const std::vector<std::int32_t> input = {32767, -32768, 32767, -32768, 0, 0, 100};
        const std::vector<float> part = {-1, 1, 1, -1, -2, 2, 0.5F};
        std::vector<std::int32_t> main(input.size());
        std::vector<std::int32_t> mix(input.size());
        splitSamples(input, part, 16, main, mix);
        QCOMPARE(main, (std::vector<std::int32_t>{0, 0, 32767, -32768, -32767, 32767, 16384}));
        for (std::size_t i = 0; i < input.size(); ++i) {
            QCOMPARE(main[i] + mix[i], input[i]);
            QVERIFY(mix[i] >= -32768 && mix[i] <= 32767);
        }
    }

    void soundGoesToItsPart_data()
    {
        const Rows<Part, double, Voice> add;
        add("strokes are drums", Part::Drums, 0.5, stroke);
        add("a trembling tone in the middle is the voice", Part::Vocals, 0.6,
            [](qint64 frame, int) { return tone(330, frame, 0.02); });
        add("a deep tone is the bass", Part::Bass, 0.6,
            [](qint64 frame, int) { return tone(65, frame, 0); });
        add("what rings on one side may be the guitar", Part::Guitar, 0.1,
            [](qint64 frame, int side) {
                const double age = double(frame % 22050) / 44100;
                return side ? 0.0 : tone(196, frame, 0) * std::exp(-3 * age);
            });
        add("struck soft chords on one side may be the piano", Part::Piano, 0.1,
            [](qint64 frame, int side) {
                double sum = 0;
                for (const int hertz : {262, 330, 392, 524, 660, 784})
                    sum += sine(hertz, frame, 44100) / (hertz < 400 ? 3 : 6);
                return (side ? 1 : 0.1) * sum * std::exp(-3 * double(frame % 22050) / 44100);
            });
        add("strokes that come in late are drums", Part::Drums, 0.5, [](qint64 frame, int side) {
            return frame < 2 * 44100 ? tone(65, frame, 0) / 50 : stroke(frame, side);
        });
    }

    void soundGoesToItsPart()
    {
        const auto [part, least, voice] = fetchRow<Part, double, Voice>();
        const WavShape shape{2, 44100, 16, 6 * 44100};
        const std::vector<std::int32_t> input = soundOf(shape, voice);
        writeWav(at("in.wav"), shape, input);
        // Guitar and piano are hardly told apart.
        const std::set<Part> alike = {Part::Guitar, Part::Piano};
        for (const Part other :
             {Part::Guitar, Part::Vocals, Part::Piano, Part::Bass, Part::Drums}) {
            const double most = alike.count(part) && alike.count(other) ? least : 0.01;
            JobControl control;
            const std::optional<Confidence> confidence = separate(task(other), control);
            QVERIFY(confidence.has_value());
            QCOMPARE(control.progress.load(), 1.0);
            QVERIFY(other != part || !confidence->isLow());
            const double share = energyOf(readWav(at("main.wav"))) / energyOf(input);
            const QString text = QStringLiteral("part %1 gets %2").arg(int(other)).arg(share);
            QVERIFY2(other == part ? share > least : share < most, qPrintable(text));
        }
    }

    void doubtsAnInstrumentThatDoesNotPlay_data()
    {
        const Rows<Part, Voice> add;
        add("drums are no voice", Part::Vocals, stroke);
        add("a plucked bass is no drum", Part::Drums, [](qint64 frame, int) {
            const double age = double(frame % 11025) / 44100;
            return tone(frame / 44100 % 2 ? 65 : 82, frame, 0) * std::exp(-8 * age);
        });
    }

    void doubtsAnInstrumentThatDoesNotPlay()
    {
        const auto [part, voice] = fetchRow<Part, Voice>();
        const WavShape shape{2, 44100, 16, 6 * 44100};
        const std::vector<std::int32_t> input = soundOf(shape, voice);
        writeWav(at("in.wav"), shape, input);
        JobControl control;
        const std::optional<Confidence> confidence = separate(task(part), control);
        const double share = energyOf(readWav(at("main.wav"))) / energyOf(input);
        const QString text = QStringLiteral("%1 of the energy, confidence %2").arg(share);
        QVERIFY2(share < 0.03 && confidence->isLow(), qPrintable(text.arg(confidence->value)));
    }

    void masksShareEverythingOut()
    {
        const MaskModel model(cueWeights, 10.8F);
        QRandomGenerator random(1);
        for (const double size : {0.0, 1.0, 1000.0}) {
            std::array<std::vector<float>, cueCount> cues;
            for (auto &values : cues) {
                for (int bin = 0; bin < Stft::binCount; ++bin)
                    values.push_back(float(size * (random.generateDouble() - 0.5)));
            }
            FrameMasks masks;
            model.computeMasks(cues, masks);
            for (std::size_t bin = 0; bin < Stft::binCount; ++bin) {
                float sum = 0;
                for (const std::vector<float> &mask : masks) {
                    QVERIFY(mask[bin] >= 0 && mask[bin] <= 1);
                    sum += mask[bin];
                }
                QVERIFY2(std::abs(sum - 1) < 1e-5F, qPrintable(QString::number(sum)));
            }
        }
    }

    void refusesWhatItCannotRead_data()
    {
        const auto header = [](int format, int bits, quint32 dataBytes) {
            QByteArray wav("RIFF\0\0\0\0WAVEfmt \x10\0\0\0", 20);
            const auto put = [&wav](quint32 value, int bytes) {
                for (int i = 0; i < bytes; ++i)
                    wav += char(value >> (8 * i));
            };
            put(quint32(format), 2), put(1, 2), put(44100, 4), put(quint32(44100 * bits / 8), 4);
            put(quint32(bits / 8), 2), put(quint32(bits), 2);
            wav += "data";
            put(dataBytes, 4);
            return wav;
        };
        const Rows<QByteArray, QByteArray> add;
        add("text", "no sound at all", "is not a WAV file");
        add("empty file", "", "is not a WAV file");
        add("no samples", header(1, 16, 0), "holds no sound");
        add("cut after the header", header(1, 16, 1000), "holds no sound");
        add("8 bit", header(1, 8, 4) + "abcd", "16 or 24 bit");
        add("Ogg", QByteArray("OggS\0\2\0\0\0\0\0\0\0\0", 14), "is not a WAV file");
    }

    void refusesWhatItCannotRead()
    {
        const auto [content, text] = fetchRow<QByteArray, QByteArray>();
        std::ofstream(at("in.wav"), std::ios::binary) << content.toStdString();
        try {
            const WavReader reader(at("in.wav"));
            QFAIL("was accepted");
        } catch (const Refusal &refusal) {
            QVERIFY2(QByteArray(refusal.what()).contains(text), refusal.what());
        }
    }

    void programSeparates_data()
    {
        const Rows<QStringList, int, QByteArray> add;
        add("done", {"in.wav", "vocals", "1.wav", "2.wav"}, 0, "low confidence (0.00)");
        add("usage", {"in.wav", "vocals"}, 2, "error: Four arguments");
        add("instrument", {"in.wav", "flute", "1.wav", "2.wav"}, 2, "error: There is no such");
        add("no WAV", {"text", "vocals", "1.wav", "2.wav"}, 1, "error: The file is not");
        add("existing result", {"in.wav", "vocals", "1.wav", "text"}, 1, "exists already");
        add("existing part", {"in.wav", "vocals", "1.wav", "2"}, 1, "2.part exists already");
        add("one result twice", {"in.wav", "vocals", "1", "./1"}, 1, "exists already");
        add("no folder", {"in.wav", "vocals", "1.wav", "no/2.wav"}, 1,
            "2.wav.part cannot be created");
    }

    void programSeparates()
    {
        const auto [arguments, code, message] = fetchRow<QStringList, int, QByteArray>();
        const QTemporaryDir dir;
        const WavShape shape{1, 8000, 16, 8000};
        writeWav(dir.filePath("in.wav").toStdString(), shape, std::vector<std::int32_t>(8000));
        for (const char *name : {"text", "2.part"})
            std::ofstream(dir.filePath(name).toStdString()) << "mine";
        QProcess program;
        program.setWorkingDirectory(dir.path());
        program.start(QCoreApplication::applicationDirPath() + "/teko-separate", arguments);
        QVERIFY(program.waitForFinished());
        QCOMPARE(program.exitCode(), code);
        const QByteArray error = program.readAllStandardError();
        QVERIFY2(error.contains(message), error);
        const QStringList files = QDir(dir.path()).entryList(QDir::Files);
        QCOMPARE(files,
                 code == 0 ? QStringList({"1.wav", "2.part", "2.wav", "in.wav", "text"})
                           : QStringList({"2.part", "in.wav", "text"}));
        for (const char *name : {"text", "2.part"})
            QCOMPARE(QFileInfo(dir.filePath(name)).size(), 4);
        // Windows keeps the folder for a moment after the program that worked there.
        QTRY_VERIFY(QDir(dir.path()).removeRecursively());
    }

    /// A file that comes to be there while the program works is somebody else's.
    void programOverwritesNothing()
    {
        const QTemporaryDir dir;
        const WavShape shape{2, 44100, 16, 60 * 44100};
        writeWav(dir.filePath("in.wav").toStdString(), shape,
                 std::vector<std::int32_t>(std::size_t(shape.frames) * 2, 1000));
        QProcess program;
        program.setWorkingDirectory(dir.path());
        program.start(QCoreApplication::applicationDirPath() + "/teko-separate",
                      {"in.wav", "bass", "1.wav", "2.wav"});
        QTRY_VERIFY(QFile::exists(dir.filePath("1.wav.part")));
        std::ofstream(dir.filePath("2.wav").toStdString()) << "mine";
        QVERIFY(program.waitForFinished());
        QCOMPARE(program.exitCode(), 1);
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files), QStringList({"2.wav", "in.wav"}));
        QCOMPARE(QFileInfo(dir.filePath("2.wav")).size(), 4);
        QTRY_VERIFY(QDir(dir.path()).removeRecursively());
    }

    void stopsAtOnceWhenCancelled()
    {
        const WavShape shape{2, 44100, 16, 120 * 44100};
        writeWav(at("in.wav"), shape,
                 std::vector<std::int32_t>(std::size_t(shape.frames) * 2, 1000));
        JobControl control;
        bool finished = true;
        std::thread worker([&] { finished = separate(task(Part::Bass), control).has_value(); });
        const bool isUnderWay =
            QTest::qWaitFor([&] { return control.progress > 0.15; }, 20000) && control.progress < 1;
        control.cancelled = true;
        const double progress = control.progress;
        worker.join();
        QVERIFY(isUnderWay);
        QVERIFY(!finished);
        // A hop that was under way may still end; it is a ten-thousandth of the work.
        const double after = control.progress - progress;
        QVERIFY2(after < 0.001, qPrintable(QString::number(after)));
    }

private:
    [[nodiscard]] std::filesystem::path at(const char *name) const
    {
        return std::filesystem::path(m_folder.path().toStdString()) / name;
    }
    [[nodiscard]] SeparationTask task(Part part) const
    {
        return {at("in.wav"), part, at("main.wav"), at("mix.wav")};
    }

    QTemporaryDir m_folder;
};

TEKO_TEST(TestSeparation)
#include "tst_separation.moc"
