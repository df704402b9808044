// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "account/signout.h"
#include "account/userauth.h"
#include "tests/account/accountcase.h"
#include "tests/localservice/servicefixture.h"

#include <QRegularExpression>

/// Accounts at the real service.
class TestAccountService final : public AccountCase
{
    Q_OBJECT

private slots:
    void lifeOfAnAccount()
    {
        RunningService service(m_home->path("service"), {"--registration", "open"});
        store().setEndpointSource([url = QUrl(service.url)] {
            return ServiceEndpoints{url, urlBelow(url, "/generate_204"), {}};
        });
        UserAuth auth(store());
        auth.registerAccount("Ann", "ann@b.de", "password 1");
        QTRY_COMPARE(store().user().name, "Ann");

        // The next run knows only what the credentials file says.
        store().setUser({});
        store().setAccess({});
        auth.initialCheck();
        QTRY_COMPARE(store().user().name, "Ann");

        const FormFields session{{"hash", store().user().hash}};
        AccountClient client(store());
        signOut(store(), client);
        QTRY_VERIFY(client.postAndWait("auth/check.php", session).text.contains("not know this"));

        auth.startRecovery("ann@b.de");
        static const QRegularExpression line("code for ann@b.de is (\\w+)");
        QTRY_VERIFY(!auth.isBusy());
        const QString log = QString::fromUtf8(service.log());
        auth.recover("ann@b.de", line.match(log).captured(1), "password 2");
        QTRY_COMPARE(store().user().name, "Ann");
    }
};

TEKO_TEST(TestAccountService)
#include "tst_accountservice.moc"
