// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "account/accountclient.h"

#include "base/programdata.h"
#include "service/connectivity.h"

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
    qint64 maxBytes;
};

AccountClient::AccountClient(ProgramData &store, std::chrono::milliseconds timeout, QObject *parent)
    : QObject(parent)
    , m_store(store)
    , m_network(new QNetworkAccessManager(this))
    , m_requests(std::make_unique<QObject>())
{
    m_network->setTransferTimeout(int(timeout.count()));
}

AccountClient::~AccountClient() = default;

void AccountClient::post(const QString &path, const FormFields &fields, QObject *context,
                         Handler handler, qint64 maxBytes)
{
    auto request =
        std::make_shared<Request>(Request{path, fields, context, std::move(handler), maxBytes});
    checkConnectivity(*m_network, m_store.endpoints().connectivity, m_requests.get(),
                      [this, request](bool isOnline) {
                          if (isOnline)
                              send(request);
                          else
                              finish(*request, {AccountAnswer::Kind::Offline, offlineText()});
                      });
}

QString AccountClient::offlineText() const
{
    return m_store.embeddedServiceLog().isEmpty() ? tr("No internet connection!")
                                                  : offlineNotice(m_store).text;
}

void AccountClient::send(const std::shared_ptr<Request> &request)
{
    QNetworkReply *reply =
        m_network->post(formRequest(m_store.endpoints().operation(request->path)),
                        formBody(withCredentials(request->fields)));
    collectText(
        reply, m_requests.get(),
        [this, request](const TextAnswer &answer) {
            if (answer.error.isEmpty())
                finish(*request, {AccountAnswer::Kind::Answered, answer.body});
            else
                finish(*request, {AccountAnswer::Kind::Failed, answer.error});
        },
        request->maxBytes);
}

void AccountClient::finish(const Request &request, const AccountAnswer &answer)
{
    const bool isAnswered = answer.kind == AccountAnswer::Kind::Answered;
    const QString news =
        request.path + QLatin1Char(' ') + (isAnswered ? QStringLiteral("answered") : answer.text);
    // A session is checked again and again while the service is out of reach.
    if (std::exchange(m_lastLoggedOutcome, news) != news)
        qInfo().noquote() << "AccountClient:" << news;
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
                                         qint64 maxBytes)
{
    AccountAnswer answer{AccountAnswer::Kind::Failed, tr("The request was interrupted.")};
    QEventLoop loop;
    connect(m_requests.get(), &QObject::destroyed, &loop, &QEventLoop::quit);
    post(
        path, fields, &loop,
        [&](const AccountAnswer &received) {
            answer = received;
            loop.quit();
        },
        maxBytes);
    loop.exec();
    return answer;
}

void AccountClient::abort()
{
    m_requests = std::make_unique<QObject>();
}
