# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
# All programs share one folder; those that users call are links to it.
include(GNUInstallDirs)
set(folder ${CMAKE_INSTALL_LIBDIR}/teko)
install(TARGETS teko teko-batch teko-service teko-separate RUNTIME DESTINATION ${folder})
install(FILES ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/ffmpeg.exe DESTINATION ${folder})
file(RELATIVE_PATH back /${CMAKE_INSTALL_BINDIR} /${folder})
foreach(program teko teko-batch teko-service teko-separate)
    file(CREATE_LINK ${back}/${program} ${CMAKE_CURRENT_BINARY_DIR}/${program} SYMBOLIC)
    install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${program} DESTINATION ${CMAKE_INSTALL_BINDIR})
endforeach()

install(FILES linux/teko.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES linux/teko.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES teko.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
install(FILES linux/teko-batch.bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME teko-batch)
install(FILES linux/teko-service.bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME teko-service)
install(FILES linux/teko-service.service DESTINATION lib/systemd/system)

# gzip leaves name and time out, so that the same text makes the same bytes.
function(teko_install_compressed source name destination)
    set(packed ${CMAKE_CURRENT_BINARY_DIR}/${name}.gz)
    add_custom_command(OUTPUT ${packed} DEPENDS ${source} COMMAND gzip -9nc ${source} > ${packed} VERBATIM)
    add_custom_target(packed-${name} ALL DEPENDS ${packed})
    install(FILES ${packed} DESTINATION ${destination})
endfunction()
foreach(page teko.1 teko-batch.1 teko-service.1 teko-separate.1)
    teko_install_compressed(${PROJECT_SOURCE_DIR}/docs/${page} ${page} ${CMAKE_INSTALL_MANDIR}/man1)
endforeach()

# Desktops look up in a cache what opens a file. A package manager brings it up to date by itself.
install(CODE "
    find_program(TEKO_UPDATE_ENTRIES update-desktop-database)
    if(TEKO_UPDATE_ENTRIES AND \"\$ENV{DESTDIR}\" STREQUAL \"\" AND NOT CMAKE_INSTALL_PREFIX MATCHES _CPack_Packages)
        execute_process(COMMAND \${TEKO_UPDATE_ENTRIES} \"\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_DATADIR}/applications\")
    endif()")
