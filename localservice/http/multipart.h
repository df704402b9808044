// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

namespace localservice {

/// A streaming parser of multipart/form-data bodies: buffers no more than a part's header.
class MultipartParser final
{
public:
    /// Receives the parts. A part's bytes come in pieces of any size.
    class Sink
    {
    public:
        virtual ~Sink() = default;
        /// A part begins. `fileName` is as the client sent it, "" for a plain field.
        virtual void beginPart(const std::string &name, const std::string &fileName) = 0;
        virtual void partData(std::string_view bytes) = 0;
        virtual void endPart() = 0;
    };

    /// `boundary` is the one of the Content-Type header; `sink` must outlive the parser.
    MultipartParser(std::string_view boundary, Sink &sink);

    /// Takes the next bytes of the body; throws BadRequest when they are malformed.
    void feed(std::string_view bytes);
    /// Whether the closing boundary has been seen.
    [[nodiscard]] bool isComplete() const { return m_state == State::End; }

private:
    enum class State { Preamble, BoundaryEnd, Header, Body, End };

    [[nodiscard]] bool step();
    bool skipPreamble();
    bool endBoundary();
    bool readHeader();
    bool readBody();

    std::string m_delimiter;
    Sink &m_sink;
    State m_state = State::Preamble;
    std::string m_buffer;
    std::string_view m_rest; // the unparsed part of the buffer
};

/// The boundary of a multipart Content-Type header; throws BadRequest when there is none.
[[nodiscard]] std::string boundaryOf(std::string_view contentType);

} // namespace localservice
