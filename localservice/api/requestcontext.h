// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "localservice/http/fields.h"

#include <string>

namespace localservice {

/// The data of a request besides its form.
struct RequestContext
{
    std::string address; ///< of the client; see clientNetwork()
    std::string session; ///< of the session cookie; "" without one
};

/// The session that a request states: by the field "hash", and by the cookie where that is empty.
/// "": none.
[[nodiscard]] const std::string &sessionOf(const Fields &fields, const RequestContext &context);

} // namespace localservice
