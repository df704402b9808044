// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/server/uploadhandler.h"

#include "localservice/http/multipart.h"

#include <chrono>
#include <vector>

namespace localservice {

namespace {

    constexpr std::streamsize kBlock = std::streamsize{256} * 1024;
    constexpr std::chrono::seconds kGrace{60};
    constexpr double kLeastRate = 4096; // bytes a second

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

    // Reads the body to its end even when the file cannot be kept: a client that is cut off
    // while it sends never sees the answer.
    void receive(Request &request, Fields &fields, ReceivedFile &file)
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
                && static_cast<double>(bytes)
                    < kLeastRate * std::chrono::duration<double>(took).count())
                throw BadRequest("The upload is too slow.");
        }
        if (!parser.isComplete())
            throw BadRequest("The upload ended before its time.");
        fields.checkText();
        file.finish();
    }

} // namespace

void UploadHandler::handleRequest(Request &request, Response &response)
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

} // namespace localservice
