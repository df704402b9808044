// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/server/formhandler.h"

#include "localservice/server/requestbody.h"

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

const std::map<std::string, FormCall, std::less<>> &formCalls()
{
    static const std::map<std::string, FormCall, std::less<>> calls = {
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

} // namespace

const FormCall *formCallOf(const std::string &path)
{
    const auto found = formCalls().find(path);
    return found == formCalls().end() ? nullptr : &found->second;
}

void FormHandler::handleRequest(Request &request, Response &response)
{
    answer(request, response, [&] {
        const std::string form = readForm(request);
        if (!m_connection.requestRead())
            throw BadRequest("The form came too slowly.");
        checkType(request, "application/x-www-form-urlencoded");
        return m_call(m_backend, Fields::fromForm(form), contextOf(request, m_rules));
    });
}

} // namespace localservice
