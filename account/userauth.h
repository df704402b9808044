// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "account/accountclient.h"
#include "account/session.h"

#include <QTimer>

/// The account element of the main view: finds out who is signed in, and signs in, registers and
/// recovers passwords. One request at a time: a form request is ignored while another is pending.
/// Being offline never signs the user out, only the service's refusal does. GUI thread only.
class UserAuth : public QObject
{
    Q_OBJECT
    /// Whether a form's request is under way.
    Q_PROPERTY(bool busy READ isBusy NOTIFY busyChanged)
    /// Error of the last form request; empty on success.
    Q_PROPERTY(QString errorText READ errorText NOTIFY errorTextChanged)
    /// The last signed-in user's address, to prefill the form.
    Q_PROPERTY(QString email READ email NOTIFY emailChanged)
    /// Whether signInLocally() has an account to sign in with.
    Q_PROPERTY(bool hasLocalAccount READ hasLocalAccount NOTIFY signedOut)

public:
    /// Works on the program's store; for the main view.
    explicit UserAuth(QObject *parent = nullptr);
    /// The store must outlive this object. The interval is the delay between two attempts to check
    /// a session while the service cannot be reached.
    explicit UserAuth(ProgramData &store, QObject *parent = nullptr,
                      std::chrono::milliseconds retryInterval = std::chrono::seconds(5));

    /// Finds out who is signed in and emits signedIn() or signedOut() after this call has returned.
    /// A later call replaces one that is under way.
    Q_INVOKABLE void initialCheck();
    /// Repeats initialCheck(); does nothing while signed out or while a check runs.
    Q_INVOKABLE void recheck();

    Q_INVOKABLE void signIn(const QString &email, const QString &password);
    Q_INVOKABLE void registerAccount(const QString &name, const QString &email,
                                     const QString &password);
    /// Has the service send a code to the address; emits recoveryStarted().
    Q_INVOKABLE void startRecovery(const QString &email);
    /// Sets a new password with the code and signs in.
    Q_INVOKABLE void recover(const QString &email, const QString &code, const QString &password);
    /// Signs in with the account that the embedded service keeps for this machine.
    Q_INVOKABLE void signInLocally();
    Q_INVOKABLE void clearError();

    [[nodiscard]] bool isBusy() const { return m_isBusy; }
    [[nodiscard]] const QString &errorText() const { return m_errorText; }
    [[nodiscard]] const QString &email() const { return m_email; }
    [[nodiscard]] bool hasLocalAccount() const;

signals:
    void signedIn();
    void signedOut();
    /// The user has signed in with the form; emitted after signedIn().
    void welcomed();
    void recoveryStarted();
    void busyChanged();
    void errorTextChanged();
    void emailChanged();

private:
    void startCheck();
    void checkKept();
    void checkNext();
    void checked(const AccountAnswer &answer);
    void refused(const QString &text);
    void continueUnverified();
    void setSignedIn();
    void setSignedOut();

    void submit(const QString &problem, const QString &path, const FormFields &fields,
                std::function<void(const QString &body)> answered);
    void finishSignIn(const QString &body);
    void setBusy(bool isBusy);
    void setError(const QString &text);
    void setEmail(const QString &email);

    ProgramData &m_store;
    Session m_session;
    AccountClient m_client;
    QTimer m_retry;
    QList<SessionCandidate> m_candidates;
    bool m_isChecking = false;
    bool m_isSignedIn = false;
    bool m_isBusy = false;
    QString m_errorText;
    QString m_email;
};
