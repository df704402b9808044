// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "account/accountclient.h"
#include "account/session.h"
#include "base/viewwindow.h"

/// The window that shows the signed-in user and their subscription, and changes their name, e-mail
/// and password. GUI thread only.
class MyAccount final : public ViewWindow
{
    Q_OBJECT

public:
    /// The store must outlive the window.
    explicit MyAccount(ProgramData &store);

    /// Shows the window with the stored data, then requests changes from the service. When the
    /// service refuses the session the window closes; the main window's check then ends the
    /// session.
    void openWindow();

signals:
    void loaded();
    /// The window has closed.
    void showParent();
    /// The user wants a subscription.
    void unlockFullAccess();

public slots:
    /// Changes the account; an empty password keeps the old one. The service requires the old
    /// password for a change of the e-mail address or the password.
    void save(const QString &name, const QString &email, const QString &password,
              const QString &oldPassword);
    void cancel();

protected:
    void windowClosed() override;

private:
    void checkSession();
    void sessionChecked(const AccountAnswer &answer);
    void askFilesLeft();
    void saved(const AccountAnswer &answer);
    void showUser();
    void showError(const QString &text);

    ProgramData &m_store;
    Session m_session;
    AccountClient m_client;
};
