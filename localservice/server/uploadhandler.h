// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "localservice/server/replies.h"

#include <Poco/Net/HTTPRequestHandler.h>

namespace localservice {

/// Takes an uploaded file with its form, streaming it to the disk.
class UploadHandler final : public Poco::Net::HTTPRequestHandler
{
public:
    explicit UploadHandler(Backend &backend)
        : m_backend(backend)
    { }

    void handleRequest(Request &request, Response &response) override;

private:
    Backend &m_backend;
};

} // namespace localservice
