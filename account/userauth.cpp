// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "account/userauth.h"

#include "account/formrules.h"
#include "account/userreply.h"
#include "base/programdata.h"
#include "service/replies.h"

#include <QDebug>

namespace {

QString firstOf(std::initializer_list<QString> problems)
{
    for (const QString &problem : problems) {
        if (!problem.isEmpty())
            return problem;
    }
    return {};
}

} // namespace

UserAuth::UserAuth(QObject *parent)
    : UserAuth(ProgramData::instance(), parent)
{ }

UserAuth::UserAuth(ProgramData &store, QObject *parent, std::chrono::milliseconds retryInterval)
    : QObject(parent)
    , m_store(store)
    , m_session(store)
    , m_client(store)
{
    m_retry.setInterval(retryInterval);
    m_retry.setSingleShot(true);
    connect(&m_retry, &QTimer::timeout, this, &UserAuth::recheck);
}

void UserAuth::initialCheck()
{
    qInfo() << "UserAuth::initialCheck";
    startCheck();
}

void UserAuth::recheck()
{
    if (m_isSignedIn && !m_isChecking)
        startCheck();
}

void UserAuth::startCheck()
{
    m_client.abort();
    m_retry.stop();
    m_isChecking = true;
    m_store.whenServiceStarted(this, [this] { checkKept(); });
}

void UserAuth::checkKept()
{
    // Two calls of initialCheck() in a row come here twice, and the first may have been enough.
    if (!m_isChecking)
        return;
    m_client.abort();
    const Credentials kept = m_session.restore();
    setEmail(kept.email);
    m_candidates = sessionsToTry(kept, m_store.localAccount());
    // Without a service there is nobody to sign in with: the rest of the program still works.
    if (m_candidates.isEmpty() && !kept.hasSignedOut && m_store.endpoints().base.isEmpty())
        enter();
    else
        checkNext();
}

void UserAuth::checkNext()
{
    if (m_candidates.isEmpty()) {
        leave();
        return;
    }
    m_client.post(QStringLiteral("auth/check.php"),
                  {{QStringLiteral("hash"), m_candidates.constFirst().hash}}, this,
                  [this](const AccountAnswer &answer) { checked(answer); });
}

void UserAuth::checked(const AccountAnswer &answer)
{
    const UserReply reply = parseUserReply(answer.text);
    if (answer.kind != AccountAnswer::Kind::Answered || reply.kind == UserReply::Kind::Garbled) {
        goOnUnchecked();
    } else if (reply.kind == UserReply::Kind::Refusal) {
        refused(answer.text);
    } else {
        m_session.begin(reply);
        enter();
    }
}

void UserAuth::refused(const QString &text)
{
    qInfo() << "UserAuth::refused";
    setError(truncatedForDisplay(text));
    if (m_candidates.takeFirst().hash == m_store.user().hash)
        m_session.end(false);
    checkNext();
}

void UserAuth::goOnUnchecked()
{
    m_session.resume(m_candidates.constFirst());
    enter();
    m_retry.start();
}

void UserAuth::enter()
{
    m_isChecking = false;
    m_isSignedIn = true;
    setBusy(false);
    setError({});
    setEmail(m_store.user().email);
    emit signedIn();
}

void UserAuth::leave()
{
    m_isChecking = false;
    m_isSignedIn = false;
    setBusy(false);
    emit signedOut();
}

bool UserAuth::hasLocalAccount() const
{
    return m_store.localAccount().has_value();
}

void UserAuth::signIn(const QString &email, const QString &password)
{
    qInfo() << "UserAuth::signIn";
    submit(firstOf({validateEmail(email), validatePassword(password)}),
           QStringLiteral("auth/login.php"),
           {{QStringLiteral("email"), email.trimmed()}, {QStringLiteral("password"), password}},
           [this](const QString &body) { enterByForm(body); });
}

void UserAuth::registerAccount(const QString &name, const QString &email, const QString &password)
{
    qInfo() << "UserAuth::registerAccount";
    submit(firstOf({validateName(name), validateEmail(email), validateNewPassword(password)}),
           QStringLiteral("auth/register.php"),
           {{QStringLiteral("name"), name.trimmed()},
            {QStringLiteral("email"), email.trimmed()},
            {QStringLiteral("password"), password}},
           [this](const QString &body) { enterByForm(body); });
}

void UserAuth::startRecovery(const QString &email)
{
    qInfo() << "UserAuth::startRecovery";
    submit(validateEmail(email), QStringLiteral("auth/recover.php"),
           {{QStringLiteral("email"), email.trimmed()}}, [this](const QString &body) {
               if (body.trimmed() == QLatin1String("1"))
                   emit recoveryStarted();
               else
                   setError(truncatedForDisplay(body));
           });
}

void UserAuth::recover(const QString &email, const QString &code, const QString &password)
{
    qInfo() << "UserAuth::recover";
    submit(firstOf({validateEmail(email), validateCode(code), validateNewPassword(password)}),
           QStringLiteral("auth/recover.php"),
           {{QStringLiteral("email"), email.trimmed()},
            {QStringLiteral("code"), code.trimmed()},
            {QStringLiteral("password"), password}},
           [this, email, password](const QString &body) {
               if (body.trimmed() == QLatin1String("1"))
                   signIn(email, password);
               else
                   setError(truncatedForDisplay(body));
           });
}

void UserAuth::signInLocally()
{
    qInfo() << "UserAuth::signInLocally";
    if (m_isBusy || !hasLocalAccount())
        return;
    setError({});
    setBusy(true);
    m_candidates = sessionsToTry({}, m_store.localAccount());
    checkNext();
}

void UserAuth::submit(const QString &problem, const QString &path, const FormFields &fields,
                      std::function<void(const QString &)> answered)
{
    if (m_isBusy)
        return;
    setError(problem);
    if (!problem.isEmpty())
        return;
    setBusy(true);
    m_client.post(path, fields, this,
                  [this, answered = std::move(answered)](const AccountAnswer &answer) {
                      setBusy(false);
                      if (answer.kind == AccountAnswer::Kind::Answered)
                          answered(answer.text);
                      else
                          setError(truncatedForDisplay(answer.text));
                  });
}

void UserAuth::enterByForm(const QString &body)
{
    const UserReply reply = parseUserReply(body);
    if (reply.kind != UserReply::Kind::User) {
        setError(refusalText(body));
        return;
    }
    m_session.begin(reply);
    enter();
    // Queued, since the welcome may be a message box with an event loop of its own.
    QMetaObject::invokeMethod(this, &UserAuth::welcomed, Qt::QueuedConnection);
}

void UserAuth::forgetError()
{
    setError({});
}

void UserAuth::setBusy(bool isBusy)
{
    if (std::exchange(m_isBusy, isBusy) != isBusy)
        emit busyChanged();
}

void UserAuth::setError(const QString &text)
{
    if (std::exchange(m_errorText, text) != text)
        emit errorTextChanged();
}

void UserAuth::setEmail(const QString &email)
{
    if (!email.isEmpty() && std::exchange(m_email, email) != email)
        emit emailChanged();
}
