// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "account/accountclient.h"
#include "account/session.h"
#include "base/viewwindow.h"

/// The window that shows who is signed in and what his subscription is worth, and changes his name,
/// e-mail and password. GUI thread only.
class MyAccount final : public ViewWindow
{
    Q_OBJECT

public:
    /// The store must outlive the window.
    explicit MyAccount(ProgramData &store);

    /// Shows the window with what is known, and asks the service for the news. When the service
    /// refuses the session the window closes: whoever shows the main window then ends it.
    void openWindow();

signals:
    void loaded();
    /// The window has closed.
    void showParent();
    /// The user wants a subscription.
    void unlockFullAccess();

public slots:
    /// Changes the account; an empty password keeps the old one. The service wants the old password
    /// for a change of the e-mail address or the password.
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
