// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "account/credentialsfile.h"
#include "tests/support/smalldisk.h"
#include "tests/support/testmain.h"

#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

namespace {

const Credentials sample{"key-1234", "ann@b.de", "hash-5678", "token-9", false};

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void setContent(const QString &path, const QByteArray &content)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
}

} // namespace

/// The sealed file: what is in it, and what becomes of one that cannot be used.
class TestCredentials final : public TestCase
{
    Q_OBJECT

private slots:
    void keepsAllAndShowsNothing()
    {
        const CredentialsFile file(m_folder.path(), m_key);
        QCOMPARE(file.read(), std::nullopt);
        for (const Credentials &credentials : {sample, Credentials{"key", {}, {}, {}, true}}) {
            QVERIFY(file.write(credentials));
            QCOMPARE(file.read(), credentials);
        }
        QVERIFY(file.write(sample));
        const QByteArray content = contentOf(path());
        for (const QString &secret : {sample.publicKey, sample.email, sample.hash})
            QVERIFY(!content.contains(secret.toUtf8()));
        QVERIFY(file.write(sample));
        QVERIFY(contentOf(path()) != content);
        QCOMPARE(QFile::permissions(path()) & ~(QFile::ReadUser | QFile::WriteUser),
                 QFile::ReadOwner | QFile::WriteOwner);
    }

    /// Every file but a whole one of this machine means: not signed in. It is kept aside.
    void unusableFiles_data()
    {
        QTest::addColumn<QByteArray>("content");
        const QByteArray whole = sealCredentials(sample, m_key);
        QByteArray changed = whole;
        changed[changed.size() - 20] = char(changed.at(changed.size() - 20) ^ 1);
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("another program's") << QByteArray(200, 'x');
        QTest::newRow("cut in the nonce") << whole.left(10);
        QTest::newRow("cut in the box") << whole.chopped(1);
        QTest::newRow("longer") << whole + "x";
        QTest::newRow("one bit changed") << changed;
        QTest::newRow("another machine's")
            << sealCredentials(sample, credentialsKey("text", "other machine"));
        QTest::newRow("huge") << whole + QByteArray(10'000'000, '\0');
    }

    void unusableFiles()
    {
        QFETCH(QByteArray, content);
        setContent(path(), content);
        setContent(path() + ".damaged", "an earlier one");
        const CredentialsFile file(m_folder.path(), m_key);
        QTest::ignoreMessage(QtCriticalMsg, QRegularExpression("cannot be used.*kept aside"));
        QCOMPARE(file.read(), std::nullopt);
        QVERIFY(!QFile::exists(path()));
        QCOMPARE(contentOf(path() + ".damaged"), content);
        QVERIFY(file.write(sample));
        QCOMPARE(file.read(), sample);
    }

    void placesThatCannotBeWritten_data()
    {
        QTest::addColumn<QString>("folder");
        QTest::newRow("no folder") << QString();
        QTest::newRow("missing folder") << m_folder.filePath("gone");
    }

    void placesThatCannotBeWritten()
    {
        QFETCH(QString, folder);
        const CredentialsFile file(folder, m_key);
        QTest::ignoreMessage(QtCriticalMsg, QRegularExpression("cannot be written"));
        QVERIFY(!file.write(sample));
        QCOMPARE(file.read(), std::nullopt);
    }

    void fullDiskKeepsTheOldFile()
    {
        const SmallDisk disk(m_folder.filePath("disk"));
        if (!disk.isMounted())
            QSKIP("needs the right to mount a small file system");
        const CredentialsFile file(m_folder.filePath("disk"), m_key);
        QVERIFY(file.write(sample));
        QFile filler(m_folder.filePath("disk/filler"));
        QVERIFY(filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        while (filler.write(QByteArray(4096, 'x')) > 0)
            continue;
        Credentials other = sample;
        other.hash = "another";
        QTest::ignoreMessage(QtCriticalMsg, QRegularExpression("cannot be written"));
        QVERIFY(!file.write(other));
        QCOMPARE(file.read(), sample);
    }

private:
    [[nodiscard]] QString path() const { return m_folder.filePath("credentials.dat"); }

    const QTemporaryDir m_folder;
    const QByteArray m_key = credentialsKey("text", "machine");
};

TEKO_TEST_MAIN(TestCredentials)
#include "tst_credentials.moc"
