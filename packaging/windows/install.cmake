# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
# The programs and all that they load, in one folder.
install(TARGETS teko teko-batch teko-service teko-separate RUNTIME DESTINATION .)
install(FILES ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION . RENAME LICENSE.txt)
install(FILES windows/LICENCES.txt DESTINATION .)
if(CMAKE_CROSSCOMPILING)
    set(qml_scanner ${QT_HOST_PATH}/lib/qt6/libexec/qmlimportscanner)
    configure_file(windows/gather.cmake.in gather.cmake @ONLY)
    install(SCRIPT ${CMAKE_CURRENT_BINARY_DIR}/gather.cmake)
    # Debian's packages of the libraries tell of all that their sources hold.
    foreach(package qt6-base qt6-declarative qt6-svg libsndfile1 libpoco libkissfft libsodium mingw-w64-x86-64)
        install(FILES /usr/share/doc/${package}-dev/copyright DESTINATION licences RENAME ${package}.txt)
    endforeach()
    install(FILES /usr/share/doc/gcc-mingw-w64-base/copyright DESTINATION licences RENAME gcc.txt)
    foreach(licence GPL-3 LGPL-3 LGPL-2.1)
        install(FILES /usr/share/common-licenses/${licence} DESTINATION licences RENAME ${licence}.txt)
    endforeach()
endif()
