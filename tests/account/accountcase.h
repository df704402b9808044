// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "account/accountclient.h"
#include "tests/support/installation.h"
#include "tests/support/rows.h"
#include "tests/support/testmain.h"

using Answer = ScriptedAnswer;

/// A user as the service describes them, with or without a subscription.
inline QByteArray userJson(const QByteArray &hash, const QByteArray &subscription = "null")
{
    return R"({"user_id":7,"name":"Ann","email":"ann@b.de","hash":")" + hash
        + R"(","subscription":)" + subscription + R"(,"access_token":"of-)" + hash + "\"}";
}

inline const QByteArray activePlan = R"({"id":3,"expired":0})";

/// A test with a fresh installation and a scripted service.
class AccountCase : public TestCase
{
    Q_OBJECT

protected slots:
    void init()
    {
        TestCase::init();
        m_home.emplace();
    }

protected:
    ScriptedServer &server() { return m_home->server; }
    ProgramData &store() { return *m_home->store; }

    /// What the service has sent before this call has arrived afterwards.
    void waitForALaterAnswer()
    {
        server().on("/generate_204", {Answer::text({}, 204)});
        server().on("/teko-server/later", {Answer::text("1")});
        QVERIFY(!AccountClient(store()).postAndWait("later", {}).text.isEmpty());
    }

    const QByteArray m_check = "/teko-server/auth/check.php";
    std::optional<Installation> m_home;
};
