// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "account/myaccount.h"

#include "account/formrules.h"
#include "account/licencegate.h"
#include "account/userreply.h"
#include "base/guiscale.h"
#include "base/programdata.h"
#include "service/replies.h"

#include <QDebug>

namespace {

/// A service without a limit names such a number; nobody counts it down.
constexpr int maxShownCount = 100'000;

QString viewState(Licence licence)
{
    switch (licence) {
    case Licence::Active:
        return QStringLiteral("active");
    case Licence::Expired:
        return QStringLiteral("expired");
    case Licence::None:
        break;
    }
    return QStringLiteral("none");
}

QString validateChange(const QString &name, const QString &email, const QString &password)
{
    for (const QString &problem : {validateName(name), validateEmail(email)}) {
        if (!problem.isEmpty())
            return problem;
    }
    return password.isEmpty() ? QString() : validateNewPassword(password);
}

} // namespace

MyAccount::MyAccount(ProgramData &store)
    : ViewWindow(tr("My Account Settings"), QUrl(QStringLiteral("qrc:/qml/MyAccount.qml")),
                 QSize(470, 400), Sizing::Fixed)
    , m_store(store)
    , m_session(store)
    , m_client(store)
{
    connectToView(SIGNAL(loaded()), SIGNAL(loaded()));
    connectView(SIGNAL(save(QString, QString, QString, QString)),
                SLOT(save(QString, QString, QString, QString)));
    connectView(SIGNAL(cancel()), SLOT(cancel()));
    connectView(SIGNAL(unlockFullAccess()), SIGNAL(unlockFullAccess()));
}

void MyAccount::openWindow()
{
    qInfo() << "MyAccount::openWindow";
    m_client.abort();
    applyScale(usableGuiScale(m_store.guiScale()));
    setViewProperty("isEditing", false);
    setViewProperty("isBusy", false);
    setViewProperty("filesLeft", -1);
    showError({});
    showUser();
    show();
    raise();
    emit loaded();
    checkSession();
}

void MyAccount::showUser()
{
    const UserRecord &user = m_store.user();
    setViewProperty("userName", user.name);
    setViewProperty("userEmail", user.email);
    setViewProperty("planType", user.subscription.type);
    setViewProperty("planVersion", user.subscription.version);
    setViewProperty("planPeriod", user.subscription.period);
    setViewProperty("planAdded", user.subscription.added);
    setViewProperty("licence", viewState(licenceOf(user)));
}

void MyAccount::showError(const QString &text)
{
    setViewProperty("errorText", truncatedForDisplay(text));
}

void MyAccount::checkSession()
{
    m_client.post(QStringLiteral("auth/check.php"), {{QStringLiteral("hash"), m_store.user().hash}},
                  this, [this](const AccountAnswer &answer) { sessionChecked(answer); });
}

void MyAccount::sessionChecked(const AccountAnswer &answer)
{
    if (answer.kind != AccountAnswer::Kind::Answered) {
        showError(answer.text);
        return;
    }
    const UserReply reply = parseUserReply(answer.text);
    if (reply.kind == UserReply::Kind::Refusal) {
        // The main window checks again when it comes back, ends the session and tells the reason.
        closeWindow();
    } else if (reply.kind == UserReply::Kind::User) {
        m_session.begin(reply);
        showUser();
        askFilesLeft();
    }
}

void MyAccount::askFilesLeft()
{
    m_client.post(QStringLiteral("processedFilesRemains.php"),
                  {{QStringLiteral("hash"), m_store.user().hash}}, this,
                  [this](const AccountAnswer &answer) {
                      const bool isAnswered = answer.kind == AccountAnswer::Kind::Answered;
                      const int left = isAnswered ? filesLeft(answer.text) : -1;
                      setViewProperty("filesLeft", left < maxShownCount ? left : -1);
                  });
}

void MyAccount::save(const QString &name, const QString &email, const QString &password,
                     const QString &oldPassword)
{
    qInfo() << "MyAccount::save";
    const QString problem = validateChange(name, email, password);
    showError(problem);
    if (!problem.isEmpty() || viewProperty("isBusy").toBool())
        return;
    m_client.abort();
    setViewProperty("isBusy", true);
    m_client.post(QStringLiteral("auth/update.php"),
                  {{QStringLiteral("hash"), m_store.user().hash},
                   {QStringLiteral("name"), name.trimmed()},
                   {QStringLiteral("email"), email.trimmed()},
                   {QStringLiteral("password"), password},
                   {QStringLiteral("oldPassword"), oldPassword}},
                  this, [this](const AccountAnswer &answer) { saved(answer); });
}

void MyAccount::saved(const AccountAnswer &answer)
{
    setViewProperty("isBusy", false);
    const bool isAnswered = answer.kind == AccountAnswer::Kind::Answered;
    const UserReply reply = parseUserReply(isAnswered ? answer.text : QString());
    if (reply.kind == UserReply::Kind::User) {
        m_session.begin(reply);
        setViewProperty("isEditing", false);
        showUser();
    } else {
        showError(isAnswered ? refusalText(answer.text) : answer.text);
    }
}

void MyAccount::cancel()
{
    qInfo() << "MyAccount::cancel";
    closeWindow();
}

void MyAccount::windowClosed()
{
    m_client.abort();
    emit showParent();
}
