# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
find_program(ffmpeg ffmpeg)
if(NOT ffmpeg)
    message(FATAL_ERROR "ffmpeg is not installed; the programs cannot convert anything without it.")
endif()
file(CREATE_LINK ${ffmpeg} ${LINK} SYMBOLIC)
