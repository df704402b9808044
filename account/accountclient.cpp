// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "account/accountclient.h"

#include "base/programdata.h"

#include <QDebug>
#include <QEventLoop>
#include <QNetworkReply>
#include <QPointer>

#include <utility>

struct AccountClient::Request
{
    QString path;
    FormFields fields;
    QPointer<QObject> context;
    Handler handler;
    qint64 mostBytes;
};

AccountClient::AccountClient(ProgramData &store, std::chrono::milliseconds patience,
                             QObject *parent)
    : QObject(parent)
    , m_store(store)
    , m_network(new QNetworkAccessManager(this))
    , m_round(std::make_unique<QObject>())
{
    m_network->setTransferTimeout(int(patience.count()));
}

AccountClient::~AccountClient() = default;

void AccountClient::post(const QString &path, const FormFields &fields, QObject *context,
                         Handler handler, qint64 mostBytes)
{
    auto request =
        std::make_shared<Request>(Request{path, fields, context, std::move(handler), mostBytes});
    // A reply without an address fails as well, from the event loop.
    QNetworkReply *check = m_network->get(plainRequest(m_store.endpoints().connectivity));
    connect(check, &QNetworkReply::finished, check, &QObject::deleteLater);
    connect(check, &QNetworkReply::finished, m_round.get(), [this, check, request] {
        if (check->error() == QNetworkReply::NoError)
            send(request);
        else
            finish(*request, {AccountAnswer::Kind::Offline, tr("No internet connection!")});
    });
}

void AccountClient::send(const std::shared_ptr<Request> &request)
{
    const QUrl url(m_store.endpoints().base.toString() + QLatin1String("/teko-server/")
                   + request->path);
    QNetworkReply *reply =
        m_network->post(formRequest(url), formBody(withCredentials(request->fields)));
    collectText(
        reply, m_round.get(),
        [this, request](const TextAnswer &answer) {
            if (answer.error.isEmpty())
                finish(*request, {AccountAnswer::Kind::Answered, answer.body});
            else
                finish(*request, {AccountAnswer::Kind::Failed, answer.error});
        },
        request->mostBytes);
}

void AccountClient::finish(const Request &request, const AccountAnswer &answer)
{
    const bool isAnswered = answer.kind == AccountAnswer::Kind::Answered;
    const QString news =
        request.path + QLatin1Char(' ') + (isAnswered ? QStringLiteral("answered") : answer.text);
    // A session is checked again and again while the service is out of reach.
    if (std::exchange(m_lastNews, news) != news)
        qInfo().noquote() << "AccountClient:" << news;
    m_replyText = answer.text;
    if (request.context)
        request.handler(answer);
}

FormFields AccountClient::withCredentials(FormFields fields) const
{
    fields.append({QStringLiteral("publicKey"), m_store.access().publicKey});
    fields.append({QStringLiteral("accessToken"), m_store.access().accessToken});
    return fields;
}

AccountAnswer AccountClient::postAndWait(const QString &path, const FormFields &fields,
                                         qint64 mostBytes)
{
    AccountAnswer answer{AccountAnswer::Kind::Failed, tr("The request was interrupted.")};
    QEventLoop loop;
    connect(m_round.get(), &QObject::destroyed, &loop, &QEventLoop::quit);
    post(
        path, fields, &loop,
        [&](const AccountAnswer &received) {
            answer = received;
            loop.quit();
        },
        mostBytes);
    loop.exec();
    return answer;
}

void AccountClient::abandon()
{
    m_round = std::make_unique<QObject>();
}
