// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/api/requestcontext.h"

namespace localservice {

const std::string &sessionOf(const Fields &fields, const RequestContext &context)
{
    const std::string &hash = fields["hash"];
    return hash.empty() ? context.session : hash;
}

} // namespace localservice
