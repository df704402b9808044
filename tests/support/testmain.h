// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>
#include <QTemporaryDir>

/// A home folder of the test's own: nothing that a test runs reads or writes the user's files.
/// Must be made before the application object.
class ScratchHome
{
public:
    ScratchHome();
    [[nodiscard]] QString path() const { return m_folder.path(); }

private:
    QTemporaryDir m_folder;
};

/// Base of every test class: a warning that was not announced with QTest::ignoreMessage() fails the
/// test. A subclass with an init() of its own calls this one.
class TestCase : public QObject
{
    Q_OBJECT

protected slots:
    void init();
};

/// Whether a text is like a pattern in which '*' stands for anything.
[[nodiscard]] bool isLike(const QString &text, const QString &pattern);

/// Puts a test class on the list of those that its program runs, one after the other, in a
/// QApplication named like the program and in a scratch home. With TEKO_TEST_CLASS in the
/// environment only the class of that name runs.
int registerTest(const char *name, QObject *(*make)());

#define TEKO_TEST(TestClass)                                                                       \
    static const int registered =                                                                  \
        registerTest(#TestClass, []() -> QObject * { return new TestClass; });
