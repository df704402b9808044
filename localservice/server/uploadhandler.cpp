// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/server/uploadhandler.h"

#include "localservice/base/refusal.h"
#include "localservice/http/multipart.h"
#include "localservice/server/requestbody.h"

#include <optional>

namespace localservice {

namespace {

// Sorts the parts of an upload: the file goes to the disk, the rest are fields.
class UploadParts final : public MultipartParser::Sink
{
public:
    UploadParts(Processing &processing, const RequestContext &context, ClientConnection &connection,
                Fields &fields, ReceivedFile &file)
        : m_processing(processing)
        , m_context(context)
        , m_connection(connection)
        , m_fields(fields)
        , m_file(file)
    { }

    void beginPart(const std::string &name, const std::string &fileName) override
    {
        m_name = name;
        m_isFile = name == "uploadedFile";
        if (m_isFile && !m_refusal)
            beginFile(fileName);
    }

    void partData(std::string_view bytes) override
    {
        if (!m_isFile)
            m_fields.append(m_name, bytes);
        else if (!m_refusal)
            appendToFile(bytes);
    }

    void endPart() override { }

    // Throws the refusal of a file that was not stored.
    void finish()
    {
        if (m_refusal)
            throw *m_refusal;
        m_fields.checkText();
        m_file.finish();
    }

private:
    // Nothing is stored for a client without a session.
    void beginFile(const std::string &fileName)
    {
        try {
            const std::int64_t account = m_processing.uploadAccount(m_fields, m_context);
            if (!m_connection.beginTransfer(m_context.address, account))
                throw Refusal("The service has too many transfers under way. Please try again.");
            m_file.begin(account, fileName, m_processing.uploadRoom(account));
        } catch (const Refusal &refusal) {
            m_refusal = refusal;
            m_connection.beginDrain();
        }
    }

    // A file that does not fit remains a transfer: its client may need minutes until it has sent
    // the rest and reads why.
    void appendToFile(std::string_view bytes)
    {
        try {
            m_file.write(bytes);
        } catch (const Refusal &refusal) {
            m_refusal = refusal;
        }
    }

    Processing &m_processing;
    const RequestContext &m_context;
    ClientConnection &m_connection;
    Fields &m_fields;
    ReceivedFile &m_file;
    std::optional<Refusal> m_refusal;
    std::string m_name;
    bool m_isFile = false;
};

// Reads the body to its end even when the file is refused: a client that is disconnected while it
// sends never sees the answer.
void receive(Request &request, ClientConnection &connection, UploadParts &parts)
{
    MultipartParser parser(boundaryOf(request.getContentType()), parts);
    RequestBody body(request);
    for (std::string_view bytes = body.next(); !bytes.empty(); bytes = body.next()) {
        connection.transferred(bytes.size());
        parser.feed(bytes);
    }
    if (!parser.isComplete())
        throw BadRequest("The upload ended prematurely.");
    parts.finish();
}

} // namespace

void UploadHandler::handleRequest(Request &request, Response &response)
{
    answer(request, response, [&] {
        checkType(request, "multipart/form-data");
        Fields fields;
        ReceivedFile file(m_backend.folder.upload(""), m_backend.maxUploadBytes,
                          m_backend.arriving);
        const RequestContext context = contextOf(request, m_rules);
        UploadParts parts(m_backend.processing, context, m_connection, fields, file);
        receive(request, m_connection, parts);
        return m_backend.processing.proceed(fields, context, file);
    });
}

} // namespace localservice
