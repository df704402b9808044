# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "The TEKO authors <teko@dravo.example>")
set(CPACK_DEBIAN_PACKAGE_SECTION sound)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# What the views load while the program runs, and the program that reads and writes all formats.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "ffmpeg, libqt6svg6, qml6-module-qtqml, qml6-module-qtqml-models, qml6-module-qtqml-workerscript, \
qml6-module-qtquick, qml6-module-qtquick-controls, qml6-module-qtquick-layouts, qml6-module-qtquick-templates, \
qml6-module-qtquick-window, qt6-qpa-plugins")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "fonts-liberation, libgl1-mesa-dri, qt6-wayland")
set(CPACK_PACKAGE_DESCRIPTION "Pick an audio or video file, choose guitar, vocals, piano, bass or drums,
and get two results: that instrument alone, and the mix without it, in the
format that you want and, for a video, under its picture.
.
It comes with teko-batch, the same without a window, and with teko-service, the
processing service, which the program starts by itself on this computer.")

set(documents ${CMAKE_INSTALL_DATADIR}/doc/teko)
install(FILES linux/copyright DESTINATION ${documents})
string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
configure_file(linux/changelog.in changelog @ONLY)
teko_install_compressed(${CMAKE_CURRENT_BINARY_DIR}/changelog changelog ${documents})
