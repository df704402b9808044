// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>

/// A user as the service describes them; without a subscription for a period of none.
inline QByteArray userJson(const QByteArray &hash, const QByteArray &subscription = "null")
{
    return R"({"user_id":7,"name":"Ann <b>B</b>","email":"ann@b.de","hash":")" + hash
        + R"(","subscription":)" + subscription + R"(,"access_token":"token-)" + hash + "\"}";
}

inline const QByteArray activePlan =
    R"({"id":3,"added":"2026-01-02","period":"1 year","version":"pro","type":"card","expired":0})";
inline const QByteArray expiredPlan =
    R"({"id":"3","added":"2024-01-02","period":"1 year","version":"pro","type":"card","expired":"1"})";
