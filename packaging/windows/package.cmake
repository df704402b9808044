# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
set(CPACK_GENERATOR NSIS ZIP)
set(CPACK_PACKAGE_FILE_NAME teko-${PROJECT_VERSION}-windows-x64)
set(CPACK_PACKAGE_INSTALL_DIRECTORY TEKO)
# CPack takes NSIS.template.in of that folder instead of its own.
set(CPACK_MODULE_PATH ${CMAKE_CURRENT_SOURCE_DIR}/windows)
set(CPACK_TEKO_ICON ${CMAKE_CURRENT_SOURCE_DIR}/teko.ico)
set(CPACK_TEKO_SIDE_PICTURE ${CMAKE_CURRENT_SOURCE_DIR}/windows/installer.bmp)
teko_version_numbers(CPACK_TEKO_NUMBERS .)

# "Open with" offers the program for the sources that its file dialog knows.
file(READ ${PROJECT_SOURCE_DIR}/base/mediaformats.cpp formats)
string(REGEX REPLACE "videoOutputSuffixes.*" "" formats "${formats}")
string(REGEX MATCHALL "u\"[a-z0-9]+\"_s" suffixes "${formats}")
list(REMOVE_DUPLICATES suffixes)
list(TRANSFORM suffixes REPLACE "u\"([a-z0-9]+)\"_s" "    !insertmacro \${ACTION} \\1")
list(JOIN suffixes "\n" CPACK_TEKO_SUFFIXES)
