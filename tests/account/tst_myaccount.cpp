// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "account/myaccount.h"
#include "tests/account/accountcase.h"

#include <QQuickItem>

/// The account window with its real view and a scripted service.
class TestMyAccount final : public AccountCase
{
    Q_OBJECT

private slots:
    void states_data()
    {
        const Rows<QByteArray, QByteArray, QString> add;
        const QByteArray subscriber = userJson("h", activePlan);
        add("subscribed", subscriber, "7", "active 7 false false ");
        add("no limit", subscriber, "1000000", "active -1 false false ");
        add("demo", userJson("h"), "0", "none 0 false false ");
        add("expired", userJson("h", R"({"id":3,"expired":1})"), "7", "expired 7 false false ");
        add("offline", "", "", "none -1 false false No internet connection!");
        add("refused", "Please sign in.", "", "closed");
    }

    void states()
    {
        const auto [user, filesLeft, expected] = fetchRow<QByteArray, QByteArray, QString>();
        server().on(m_check, {Answer::text(user)});
        server().on(Installation::filesLeft, {Answer::text(filesLeft)});
        if (user.isEmpty())
            server().on("/generate_204", {Answer::cut()});
        MyAccount window(store());
        window.openWindow();
        QTRY_VERIFY(server().requests(Installation::filesLeft).isEmpty() == filesLeft.isEmpty());
        QTRY_COMPARE(state(window), expected);
        waitForALaterAnswer();
        QCOMPARE(state(window), expected);
    }

    /// What the user has typed stays until the service has taken it over.
    void changes()
    {
        const QByteArray path = "/teko-server/auth/update.php";
        server().on(path, {Answer::text("<b>Taken</b>"), Answer::text(userJson("h", activePlan))});
        MyAccount window(store());
        window.openWindow();
        window.rootObject()->setProperty("isEditing", true);
        window.save(" New ", "new@b.de", "short", "old");
        QVERIFY(state(window).contains("at least 8 characters"));
        window.save(" New ", "new@b.de", "", "old one");
        QTRY_COMPARE(state(window), "none -1 true false <b>Taken</b>");
        window.save(" New ", "new@b.de", "", "old one");
        QTRY_COMPARE(state(window), "active -1 false false ");
        QVERIFY(server().requests(path)[0].body.contains(
            "&name=New&email=new@b.de&password=&oldPassword=old%20one"));
    }

    /// An answer that still comes must not bring the session back.
    void aClosedWindowHearsNothing()
    {
        server().on(m_check, {Answer::text(userJson("h")).held()});
        MyAccount window(store());
        window.openWindow();
        QTRY_COMPARE(server().requests(m_check).size(), 1);
        window.cancel();
        server().release();
        waitForALaterAnswer();
        QCOMPARE(store().user(), UserRecord());
    }

private:
    static QString state(const MyAccount &window)
    {
        QStringList values;
        for (const char *name : {"licence", "filesLeft", "isEditing", "isBusy", "errorText"})
            values << window.rootObject()->property(name).toString();
        return window.isVisible() ? values.join(' ') : "closed";
    }
};

TEKO_TEST(TestMyAccount)
#include "tst_myaccount.moc"
