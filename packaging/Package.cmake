# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
# What CPack makes of an installation; scripts/package.sh runs it.
set(CPACK_PACKAGE_NAME teko)
set(CPACK_PACKAGE_VENDOR "Dravo Software")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "takes one instrument out of a song or a video")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_VERBATIM_VARIABLES ON)
# Gives all files the time of the commit.
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_SOURCE_DIR}/SetTimes.cmake)
if(WIN32)
    include(windows/package.cmake)
else()
    include(linux/package.cmake)
endif()
include(CPack)
