// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "localservice/server/transferrate.h"

namespace localservice {

TransferRate::TransferRate(Time begin, std::chrono::milliseconds window, std::int64_t minBytes)
    : m_window(window)
    , m_minBytes(minBytes)
    , m_samples{{begin, 0}}
{ }

bool TransferRate::isTooSlow(Time now, std::int64_t bytes)
{
    const Time windowBegin = now - m_window;
    m_samples.push_back({now, bytes});
    while (m_samples[1].time <= windowBegin)
        m_samples.pop_front();
    const Sample &first = m_samples.front();
    return first.time <= windowBegin && bytes - first.bytes < m_minBytes;
}

} // namespace localservice
