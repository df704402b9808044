// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <stdexcept>

namespace localservice {

/// A request or a job that cannot be served; what() is one sentence for the user.
class Refusal final : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

} // namespace localservice
