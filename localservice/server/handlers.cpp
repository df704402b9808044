// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/server/handlers.h"

#include "localservice/base/log.h"
#include "localservice/base/refusal.h"
#include "localservice/http/multipart.h"
#include "localservice/server/pages.h"

#include <Poco/Data/SQLite/SQLiteException.h>
#include <Poco/Net/HTTPRequestHandler.h>
#include <Poco/Net/HTTPServerRequest.h>
#include <Poco/Net/HTTPServerResponse.h>
#include <Poco/Net/NameValueCollection.h>
#include <Poco/Net/NetException.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <map>

namespace localservice {

namespace {

    using Poco::Net::HTTPResponse;
    using Request = Poco::Net::HTTPServerRequest;
    using Response = Poco::Net::HTTPServerResponse;

    constexpr const char *kCookie = "teko-session";
    constexpr const char *kPlainText = "text/plain; charset=utf-8";
    constexpr const char *kBroken = "The service could not answer the request.";

    std::string pathOf(const Request &request)
    {
        const std::string &uri = request.getURI();
        return uri.substr(0, uri.find_first_of("?#"));
    }

    bool isGet(const Request &request)
    {
        return request.getMethod() == Request::HTTP_GET
            || request.getMethod() == Request::HTTP_HEAD;
    }

    void send(const Request &request, Response &response, HTTPResponse::HTTPStatus status,
              const std::string &type, const std::string &body)
    {
        response.setStatusAndReason(status);
        response.setContentType(type);
        response.setContentLength64(static_cast<Poco::Int64>(body.size()));
        response.set("X-Content-Type-Options", "nosniff");
        response.set("Cache-Control", "no-store");
        std::ostream &stream = response.send();
        if (request.getMethod() != Request::HTTP_HEAD)
            stream << body;
        stream.flush();
    }

    // The host as the client knows it, unless it is nothing that belongs into an address.
    std::string hostOf(const Request &request, const Backend &backend)
    {
        const std::string host = request.get("Host", "");
        const bool plain = std::all_of(host.begin(), host.end(), [](unsigned char c) {
            return std::isalnum(c) != 0 || c == '.' || c == '-' || c == ':' || c == '[' || c == ']';
        });
        return host.empty() || !plain ? backend.fallbackHost : host;
    }

    Caller callerOf(const Request &request, const Backend &backend)
    {
        Poco::Net::NameValueCollection cookies;
        request.getCookies(cookies);
        return {request.clientAddress().host().toString(), "http://" + hostOf(request, backend),
                cookies.get(kCookie, "")};
    }

    // A request that names its account makes the later ones of the same client, which name none,
    // that account's as well.
    void rememberSession(Response &response, const Fields &fields)
    {
        const std::string &hash = fields["hash"];
        const bool plain = std::all_of(hash.begin(), hash.end(),
                                       [](unsigned char c) { return std::isxdigit(c) != 0; });
        if (!hash.empty() && plain)
            response.set("Set-Cookie",
                         std::string(kCookie) + "=" + hash + "; Path=/; HttpOnly; SameSite=Strict");
    }

    // Answers a request with what `reply` gives. A refusal is a normal answer: clients show its
    // text only when the status is 200.
    void answer(const Request &request, Response &response,
                const std::function<std::string()> &reply)
    {
        try {
            send(request, response, HTTPResponse::HTTP_OK, kPlainText, reply());
        } catch (const Refusal &refusal) {
            send(request, response, HTTPResponse::HTTP_OK, kPlainText, refusal.what());
        } catch (const BadRequest &error) {
            send(request, response, HTTPResponse::HTTP_BAD_REQUEST, kPlainText, error.what());
        } catch (const Poco::Net::NetException &) {
            // The client is gone, nobody waits for the answer.
            return;
        } catch (const Poco::Data::SQLite::DatabaseFullException &) {
            send(request, response, HTTPResponse::HTTP_OK, kPlainText,
                 "The service has no room left on its disk.");
        } catch (const Poco::Exception &error) {
            log(pathOf(request) + ": " + error.displayText());
            send(request, response, HTTPResponse::HTTP_INTERNAL_SERVER_ERROR, kPlainText, kBroken);
        } catch (const std::exception &error) {
            log(pathOf(request) + ": " + error.what());
            send(request, response, HTTPResponse::HTTP_INTERNAL_SERVER_ERROR, kPlainText, kBroken);
        }
    }

    std::string readForm(Request &request)
    {
        std::string body;
        std::vector<char> block(8192);
        while (request.stream().read(block.data(), static_cast<std::streamsize>(block.size()))
               || request.stream().gcount() > 0) {
            body.append(block.data(), static_cast<std::size_t>(request.stream().gcount()));
            if (body.size() > Fields::kMostBytes)
                throw BadRequest("The form is too large.");
        }
        return body;
    }

    using FormCall = std::function<std::string(Backend &, const Fields &, const Caller &)>;

    FormCall call(std::string (Processing::*operation)(const Fields &, const Caller &))
    {
        return [operation](Backend &backend, const Fields &fields, const Caller &caller) {
            return (backend.processing.*operation)(fields, caller);
        };
    }

    FormCall call(std::string (Accounts::*operation)(const Fields &, const Caller &))
    {
        return [operation](Backend &backend, const Fields &fields, const Caller &caller) {
            return (backend.accounts.*operation)(fields, caller);
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
            {"/teko-server/auth/update.php", call(&Accounts::update)},
            {"/teko-server/auth/archive.php", call(&Accounts::archive)},
        };
        return calls;
    }

    class FormHandler final : public Poco::Net::HTTPRequestHandler
    {
    public:
        FormHandler(Backend &backend, const FormCall &call)
            : m_backend(backend)
            , m_call(call)
        { }

        void handleRequest(Request &request, Response &response) override
        {
            answer(request, response, [&] {
                const Fields fields = Fields::fromForm(readForm(request));
                std::string reply = m_call(m_backend, fields, callerOf(request, m_backend));
                rememberSession(response, fields);
                return reply;
            });
        }

    private:
        Backend &m_backend;
        const FormCall &m_call;
    };

    // Sorts the parts of an upload: the file goes to the disk, the rest are fields.
    class UploadParts final : public MultipartParser::Sink
    {
    public:
        UploadParts(Fields &fields, ReceivedFile &file)
            : m_fields(fields)
            , m_file(file)
        { }

        void beginPart(const std::string &name, const std::string &fileName) override
        {
            m_name = name;
            m_isFile = name == "uploadedFile";
            if (m_isFile)
                m_file.begin(fileName);
        }

        void partData(std::string_view bytes) override
        {
            if (m_isFile)
                m_file.write(bytes);
            else
                m_fields.append(m_name, bytes);
        }

        void endPart() override { }

    private:
        Fields &m_fields;
        ReceivedFile &m_file;
        std::string m_name;
        bool m_isFile = false;
    };

    class UploadHandler final : public Poco::Net::HTTPRequestHandler
    {
    public:
        explicit UploadHandler(Backend &backend)
            : m_backend(backend)
        { }

        void handleRequest(Request &request, Response &response) override
        {
            answer(request, response, [&] {
                Fields fields;
                ReceivedFile file(m_backend.folder.upload(""), m_backend.mostUploadBytes,
                                  m_backend.arriving);
                receive(request, fields, file);
                std::string reply = m_backend.processing.proceed(fields, file);
                rememberSession(response, fields);
                return reply;
            });
        }

    private:
        // Reads the body to its end even when the file cannot be kept: a client that is cut off
        // while it sends never sees the answer.
        static void receive(Request &request, Fields &fields, ReceivedFile &file)
        {
            UploadParts parts(fields, file);
            MultipartParser parser(boundaryOf(request.getContentType()), parts);
            std::vector<char> block(kBlock);
            std::uint64_t bytes = 0;
            const auto began = std::chrono::steady_clock::now();
            std::istream &stream = request.stream();
            while (stream.read(block.data(), kBlock) || stream.gcount() > 0) {
                const auto got = static_cast<std::size_t>(stream.gcount());
                parser.feed({block.data(), got});
                bytes += got;
                const auto took = std::chrono::steady_clock::now() - began;
                if (took > kGrace
                    && bytes < kLeastRate * std::chrono::duration<double>(took).count())
                    throw BadRequest("The upload is too slow.");
            }
            if (!parser.isComplete())
                throw BadRequest("The upload ended before its time.");
            fields.checkText();
            file.finish();
        }

        static constexpr std::streamsize kBlock = 256 * 1024;
        static constexpr std::chrono::seconds kGrace{60};
        static constexpr double kLeastRate = 4096; // bytes a second

        Backend &m_backend;
    };

    class ResultHandler final : public Poco::Net::HTTPRequestHandler
    {
    public:
        explicit ResultHandler(Backend &backend)
            : m_backend(backend)
        { }

        void handleRequest(Request &request, Response &response) override
        {
            const std::optional<std::filesystem::path> file = fileOf(pathOf(request));
            std::error_code missing;
            if (!file || !std::filesystem::is_regular_file(*file, missing)) {
                send(request, response, HTTPResponse::HTTP_NOT_FOUND, kPlainText, "Not found.");
                return;
            }
            response.set("X-Content-Type-Options", "nosniff");
            response.set("Cache-Control", "private, no-store");
            response.sendFile(file->string(), "audio/wav");
        }

    private:
        // "/results/TOKEN/NAME.wav", with the names that download.php gives.
        [[nodiscard]] std::optional<std::filesystem::path> fileOf(const std::string &path) const
        {
            const std::string rest = path.substr(std::string_view("/results/").size());
            const std::size_t slash = std::min(rest.find('/'), rest.size());
            const std::optional<Job> job = m_backend.jobs.findByToken(rest.substr(0, slash));
            if (!job || job->state != JobState::Ready)
                return std::nullopt;
            const std::string name = rest.substr(slash);
            if (name == "/" + job->instrument + ".wav")
                return m_backend.folder.mainResult(job->token);
            if (name == "/mix-without-" + job->instrument + ".wav")
                return m_backend.folder.mixResult(job->token);
            return std::nullopt;
        }

        Backend &m_backend;
    };

    // Answers with what is known beforehand.
    class FixedHandler final : public Poco::Net::HTTPRequestHandler
    {
    public:
        FixedHandler(HTTPResponse::HTTPStatus status, std::string type, std::string body)
            : m_status(status)
            , m_type(std::move(type))
            , m_body(std::move(body))
        { }

        void handleRequest(Request &request, Response &response) override
        {
            if (m_status == HTTPResponse::HTTP_NO_CONTENT) {
                response.setStatusAndReason(m_status);
                response.send();
                return;
            }
            send(request, response, m_status, m_type, m_body);
        }

    private:
        HTTPResponse::HTTPStatus m_status;
        std::string m_type;
        std::string m_body;
    };

    Poco::Net::HTTPRequestHandler *handlerOfGet(Backend &backend, const std::string &path)
    {
        if (path == "/generate_204")
            return new FixedHandler(HTTPResponse::HTTP_NO_CONTENT, "", "");
        if (path.rfind("/results/", 0) == 0)
            return new ResultHandler(backend);
        if (const std::optional<std::string> page = pageAt(path))
            return new FixedHandler(HTTPResponse::HTTP_OK, "text/html; charset=utf-8", *page);
        return new FixedHandler(HTTPResponse::HTTP_NOT_FOUND, kPlainText, "Not found.");
    }

} // namespace

Poco::Net::HTTPRequestHandler *HandlerFactory::createRequestHandler(const Request &request)
{
    m_connections.headerRead(request.clientAddress().toString());
    const std::string path = pathOf(request);
    if (isGet(request))
        return handlerOfGet(m_backend, path);
    const auto call = formCalls().find(path);
    const bool isUpload = path == "/teko-server/proceed.php";
    if (!isUpload && call == formCalls().end())
        return new FixedHandler(HTTPResponse::HTTP_NOT_FOUND, kPlainText, "Not found.");
    if (request.getMethod() != Request::HTTP_POST)
        return new FixedHandler(HTTPResponse::HTTP_METHOD_NOT_ALLOWED, kPlainText, "Not allowed.");
    if (isUpload)
        return new UploadHandler(m_backend);
    return new FormHandler(m_backend, call->second);
}

} // namespace localservice
