// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/server/handlerfactory.h"

#include "localservice/server/pages.h"
#include "localservice/server/replies.h"
#include "localservice/server/requestbody.h"
#include "localservice/server/resulthandler.h"
#include "localservice/server/uploadhandler.h"

#include <functional>
#include <map>

namespace localservice {

namespace {

std::string readForm(Request &request)
{
    std::string form;
    RequestBody body(request);
    for (std::string_view bytes = body.next(); !bytes.empty(); bytes = body.next()) {
        form += bytes;
        if (form.size() > Fields::maxBytes)
            throw BadRequest("The form is too large.");
    }
    return form;
}

using FormCall = std::function<std::string(Backend &, const Fields &, const RequestContext &)>;

FormCall call(std::string (Processing::*operation)(const Fields &, const RequestContext &))
{
    return [operation](Backend &backend, const Fields &fields, const RequestContext &context) {
        return (backend.processing.*operation)(fields, context);
    };
}

FormCall call(std::string (Accounts::*operation)(const Fields &, const RequestContext &))
{
    return [operation](Backend &backend, const Fields &fields, const RequestContext &context) {
        return (backend.accounts.*operation)(fields, context);
    };
}

const std::map<std::string, FormCall> &formCalls()
{
    static const std::map<std::string, FormCall> calls = {
        {"/teko-server/repeat.php", call(&Processing::repeat)},
        {"/teko-server/repeatDemo.php", call(&Processing::repeatDemo)},
        {"/teko-server/remains.php", call(&Processing::remains)},
        {"/teko-server/cancel.php", call(&Processing::cancel)},
        {"/teko-server/download.php", call(&Processing::download)},
        {"/teko-server/removeUploaded.php", call(&Processing::removeUploaded)},
        {"/teko-server/processedFilesRemains.php", call(&Processing::processedFilesRemains)},
        {"/teko-server/auth/login.php", call(&Accounts::login)},
        {"/teko-server/auth/register.php", call(&Accounts::registerAccount)},
        {"/teko-server/auth/recover.php", call(&Accounts::recover)},
        {"/teko-server/auth/check.php", call(&Accounts::check)},
        {"/teko-server/auth/logout.php", call(&Accounts::logout)},
        {"/teko-server/auth/update.php", call(&Accounts::update)},
        {"/teko-server/auth/archive.php", call(&Accounts::archive)},
    };
    return calls;
}

class FormHandler final : public Poco::Net::HTTPRequestHandler
{
public:
    FormHandler(Backend &backend, Connections &connections, const FormCall &call)
        : m_backend(backend)
        , m_connections(connections)
        , m_call(call)
    { }

    void handleRequest(Request &request, Response &response) override
    {
        answer(request, response, [&] {
            const std::string form = readForm(request);
            if (!m_connections.requestRead(request.clientAddress().toString()))
                throw BadRequest("The form came too slowly.");
            const Fields fields = Fields::fromForm(form);
            return m_call(m_backend, fields, contextOf(request, m_backend));
        });
    }

private:
    Backend &m_backend;
    Connections &m_connections;
    const FormCall &m_call;
};

// Answers with what is known beforehand.
class FixedHandler final : public Poco::Net::HTTPRequestHandler
{
public:
    FixedHandler(Response::HTTPStatus status, std::string type, std::string body)
        : m_status(status)
        , m_type(std::move(type))
        , m_body(std::move(body))
    { }

    void handleRequest(Request &request, Response &response) override
    {
        if (m_status == Response::HTTP_NO_CONTENT) {
            response.setStatusAndReason(m_status);
            response.send();
            return;
        }
        send(request, response, m_status, m_type, m_body);
    }

private:
    Response::HTTPStatus m_status;
    std::string m_type;
    std::string m_body;
};

Poco::Net::HTTPRequestHandler *handlerOfGet(Backend &backend, const std::string &path)
{
    if (path == "/generate_204")
        return new FixedHandler(Response::HTTP_NO_CONTENT, "", "");
    if (path.rfind("/results/", 0) == 0)
        return new ResultHandler(backend);
    if (const std::optional<std::string> page = pageAt(path))
        return new FixedHandler(Response::HTTP_OK, "text/html; charset=utf-8", *page);
    return new FixedHandler(Response::HTTP_NOT_FOUND, plainText, "Not found.");
}

} // namespace

Poco::Net::HTTPRequestHandler *HandlerFactory::createRequestHandler(const Request &request)
{
    const std::string path = pathOf(request);
    const auto call = formCalls().find(path);
    const bool isForm = call != formCalls().end();
    const bool isPost = request.getMethod() == Request::HTTP_POST;
    if (isForm && isPost)
        return new FormHandler(m_backend, m_connections, call->second);
    // Other bodies may take longer. An aborted connection needs no answer.
    (void)m_connections.requestRead(request.clientAddress().toString());
    if (request.getMethod() == Request::HTTP_GET || request.getMethod() == Request::HTTP_HEAD)
        return handlerOfGet(m_backend, path);
    const bool isUpload = path == "/teko-server/proceed.php";
    if (isUpload && isPost)
        return new UploadHandler(m_backend);
    if (isUpload || isForm)
        return new FixedHandler(Response::HTTP_METHOD_NOT_ALLOWED, plainText, "Not allowed.");
    return new FixedHandler(Response::HTTP_NOT_FOUND, plainText, "Not found.");
}

} // namespace localservice
