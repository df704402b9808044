// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "base/programdata.h"
#include "tests/support/rows.h"
#include "tests/support/scriptedserver.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QTest>

Q_DECLARE_METATYPE(ScriptedAnswer)

/// An installation of its own for each test, and a scripted service that can be reached.
class AccountFixture
{
public:
    AccountFixture()
    {
        QDir(documentsAppFolder()).removeRecursively();
        QDir().mkpath(documentsAppFolder());
        server.on("/generate_204", {ScriptedAnswer::text({}, 204)});
        restart();
    }

    /// What the next run of the program finds.
    void restart()
    {
        store = std::make_unique<ProgramData>(documentsAppFolder() + "/teko.ini");
        store->setEndpointSource([this] {
            return ServiceEndpoints{server.url(), server.url("/generate_204"), {}};
        });
    }

    [[nodiscard]] static QString credentialsPath()
    {
        return documentsAppFolder() + "/credentials.dat";
    }

    ScriptedServer server;
    std::unique_ptr<ProgramData> store;
};

/// A user as the service describes him; without a subscription for a period of none.
inline QByteArray userJson(const QByteArray &hash, const QByteArray &subscription = "null")
{
    return R"({"user_id":7,"name":"Ann <b>B</b>","email":"ann@b.de","hash":")" + hash
        + R"(","subscription":)" + subscription + R"(,"access_token":"token-)" + hash + "\"}";
}

inline const QByteArray activePlan =
    R"({"id":3,"added":"2026-01-02","period":"1 year","version":"pro","type":"card","expired":0})";
inline const QByteArray expiredPlan =
    R"({"id":"3","added":"2024-01-02","period":"1 year","version":"pro","type":"card","expired":"1"})";
