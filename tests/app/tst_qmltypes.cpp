// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "account/userauth.h"
#include "app/backendloader.h"
#include "tests/support/files.h"
#include "tests/support/rows.h"
#include "tests/support/testmain.h"

#include <QMetaMethod>
#include <QRegularExpression>

namespace {

/// "void name(double,QString)" for each signal, slot and invokable method of the class itself, in
/// their order, which the descriptions keep as well; properties come first.
QStringList membersOf(const QMetaObject &type)
{
    QStringList members;
    for (int i = type.propertyOffset(); i < type.propertyCount(); ++i)
        members << QString::fromLatin1(type.property(i).typeName()) + ' ' + type.property(i).name();
    for (int i = type.methodOffset(); i < type.methodCount(); ++i) {
        const QMetaMethod method = type.method(i);
        members << QString::fromLatin1(method.typeName()) + ' ' + method.methodSignature();
    }
    return members;
}

/// The same out of a description.
QStringList membersIn(const QString &text)
{
    static const QRegularExpression member(
        R"-((Signal|Method|Property) \{\s*name: "(\w+)"(?:[;\s]+type: "(\w+)")?((?:[^{}]|\{[^{}]*\})*)\})-");
    static const QRegularExpression parameter(R"-(Parameter \{ name: "\w+"; type: "(\w+)" \})-");
    QStringList members;
    for (const QRegularExpressionMatch &found : member.globalMatch(text)) {
        QStringList types;
        for (const QRegularExpressionMatch &each : parameter.globalMatch(found.captured(4)))
            types << each.captured(1);
        const bool isProperty = found.captured(1) == "Property";
        members << (found.captured(3).isEmpty() ? "void" : found.captured(3)) + ' '
                + found.captured(2) + (isProperty ? QString() : '(' + types.join(',') + ')');
    }
    return members;
}

} // namespace

/// The views are compiled and checked against descriptions of the backend types, which have to be
/// true.
class TestQmlTypes : public TestCase
{
    Q_OBJECT

private slots:
    void describesTheType_data()
    {
        const Rows<const QMetaObject *> add;
        add("BackendLoader", &BackendLoader::staticMetaObject);
        add("UserAuth", &UserAuth::staticMetaObject);
    }

    void describesTheType()
    {
        const auto [type] = fetchRow<const QMetaObject *>();
        const QByteArray text = readFile(TEKO_QML_TYPES "/backend/"
                                         + QString(QTest::currentDataTag()) + "/plugins.qmltypes");
        const QStringList real = membersOf(*type);
        QVERIFY(!real.isEmpty());
        QCOMPARE(membersIn(text), real);
    }
};

TEKO_TEST(TestQmlTypes)
#include "tst_qmltypes.moc"
