# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0

# teko_version_numbers(VARIABLE SEPARATOR): the version as the four numbers that Windows wants. Zeros before a number would
# make it an octal one.
function(teko_version_numbers variable separator)
    string(REGEX REPLACE "(^|\\.)0+([0-9])" "\\1\\2" numbers "${PROJECT_VERSION}.0.0")
    string(REPLACE "." "${separator}" numbers "${numbers}")
    set(${variable} ${numbers} PARENT_SCOPE)
endfunction()

# teko_windows_program(TARGET DESCRIPTION): gives a program its icon, its version and its manifest, and one of the command
# line a console that shows UTF-8. Nothing on other systems.
function(teko_windows_program target description)
    if(NOT WIN32)
        return()
    endif()
    teko_version_numbers(numbers ,)
    configure_file(${PROJECT_SOURCE_DIR}/packaging/windows/program.rc.in ${target}.rc @ONLY)
    set_source_files_properties(${CMAKE_CURRENT_BINARY_DIR}/${target}.rc PROPERTIES
        OBJECT_DEPENDS "${PROJECT_SOURCE_DIR}/packaging/teko.ico;${PROJECT_SOURCE_DIR}/packaging/windows/program.manifest")
    target_sources(${target} PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc)
    get_target_property(has_no_console ${target} WIN32_EXECUTABLE)
    if(NOT has_no_console)
        target_sources(${target} PRIVATE ${PROJECT_SOURCE_DIR}/packaging/windows/console.cpp)
    endif()
endfunction()
