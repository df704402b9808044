// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "account/credentialsfile.h"
#include "tests/support/files.h"
#include "tests/support/rows.h"
#include "tests/support/smalldisk.h"
#include "tests/support/testmain.h"

#include <QRegularExpression>
#include <QTemporaryDir>

namespace {

const Credentials sample{"key-1234", "ann@b.de", "hash-5678", "token-9", false, "https://s"};

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
        for (const Credentials &credentials : {sample, Credentials{"key", {}, {}, {}, true, {}}}) {
            QVERIFY(file.write(credentials));
            QCOMPARE(file.read(), credentials);
        }
        QVERIFY(file.write(sample));
        const QByteArray content = readFile(path());
        for (const QString &secret : {sample.publicKey, sample.email, sample.hash})
            QVERIFY(!content.contains(secret.toUtf8()));
        QVERIFY(file.write(sample));
        QVERIFY(readFile(path()) != content);
        QCOMPARE(QFile::permissions(path()) & ~(QFile::ReadUser | QFile::WriteUser),
                 QFile::ReadOwner | QFile::WriteOwner);
    }

    /// Every file but a whole one of this machine means: not signed in. It is kept aside.
    void unusableFiles_data()
    {
        const Rows<QByteArray> add;
        const QByteArray whole = sealCredentials(sample, m_key);
        QByteArray changed = whole;
        changed[changed.size() - 20] = char(changed.at(changed.size() - 20) ^ 1);
        add("empty", "");
        add("another program's", QByteArray(200, 'x'));
        add("cut in the nonce", whole.left(10));
        add("cut in the box", whole.chopped(1));
        add("longer", whole + "x");
        add("one bit changed", changed);
        add("another machine's", sealCredentials(sample, credentialsKey("text", "other machine")));
        add("huge", whole + QByteArray(10'000'000, '\0'));
    }

    void unusableFiles()
    {
        const auto [content] = fetchRow<QByteArray>();
        writeFile(path(), content);
        writeFile(path() + ".damaged", "an earlier one");
        const CredentialsFile file(m_folder.path(), m_key);
        QTest::ignoreMessage(QtCriticalMsg, QRegularExpression("cannot be used.*kept aside"));
        QCOMPARE(file.read(), std::nullopt);
        QVERIFY(!QFile::exists(path()));
        QCOMPARE(readFile(path() + ".damaged"), content);
        QVERIFY(file.write(sample));
        QCOMPARE(file.read(), sample);
    }

    void placesThatCannotBeWritten()
    {
        for (const QString &folder : {QString(), m_folder.filePath("gone")}) {
            const CredentialsFile file(folder, m_key);
            QTest::ignoreMessage(QtCriticalMsg, QRegularExpression("cannot be written"));
            QVERIFY(!file.write(sample));
            QCOMPARE(file.read(), std::nullopt);
        }
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
