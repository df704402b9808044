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
endif()
