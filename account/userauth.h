// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>

/// The account element of the main view.
class UserAuth : public QObject
{
    Q_OBJECT

public:
    explicit UserAuth(QObject *parent = nullptr);

    /// Finds out who is signed in and answers with signedIn() or signedOut(), after this call has
    /// returned. Every user counts as the signed-in local one.
    Q_INVOKABLE void initialCheck();

signals:
    void signedIn();
    void signedOut();
};
