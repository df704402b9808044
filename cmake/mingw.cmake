# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
# Toolchain for 64-bit Windows on Debian: MinGW's compiler, this machine's Qt tools, and the libraries in the folder that
# TEKO_WINDOWS_SYSROOT names (docs/windows.md).
set(TEKO_WINDOWS_SYSROOT "$ENV{TEKO_WINDOWS_SYSROOT}" CACHE PATH "Libraries and headers for Windows")
if(NOT IS_DIRECTORY "${TEKO_WINDOWS_SYSROOT}/include")
    message(FATAL_ERROR "TEKO_WINDOWS_SYSROOT must name a folder with the libraries for Windows; see docs/windows.md.")
endif()
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES TEKO_WINDOWS_SYSROOT)

set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

set(CMAKE_PREFIX_PATH "${TEKO_WINDOWS_SYSROOT}")
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32 "${TEKO_WINDOWS_SYSROOT}")
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_LIBDIR} "${TEKO_WINDOWS_SYSROOT}/lib/pkgconfig")
unset(ENV{PKG_CONFIG_PATH})

# moc, rcc, qmlcachegen and qmlimportscanner are programs of this machine.
set(QT_HOST_PATH /usr CACHE PATH "Qt for this machine, of the same version")
set(QT_HOST_PATH_CMAKE_DIR /usr/lib/${CMAKE_HOST_SYSTEM_PROCESSOR}-linux-gnu/cmake CACHE PATH "Its CMake files")

# Poco spells Windows' headers as on Windows, where the case of letters does not matter.
foreach(header Iphlpapi Mswsock WinSock2 Windows Winsock2 Ws2ipdef Ws2tcpip)
    string(TOLOWER ${header} name)
    file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/capitals/${header}.h CONTENT "#include <${name}.h>\n")
endforeach()
set(CMAKE_CXX_FLAGS_INIT "-isystem ${CMAKE_BINARY_DIR}/capitals")
# No symbols, and no time of the build: the same sources make the same bytes.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-s -Wl,--no-insert-timestamp")
