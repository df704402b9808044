// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

inline constexpr char appVersion[] = "1.003";
inline constexpr char buildStamp[] = "25.0411";
