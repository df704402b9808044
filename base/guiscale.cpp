// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "base/guiscale.h"

#include <algorithm>
#include <cmath>

double usableGuiScale(double stored)
{
    if (!std::isfinite(stored) || stored <= 0)
        return 1;
    return std::clamp(stored, minGuiScale, maxGuiScale);
}
