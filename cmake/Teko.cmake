# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0

# Warnings and sanitizers that all code of the project is built with.
function(teko_flags target)
    if(WIN32)
        # Windows' headers define min and max, and more than anybody uses, unless they are told not to.
        target_compile_definitions(${target} PRIVATE NOMINMAX WIN32_LEAN_AND_MEAN UNICODE _UNICODE)
    endif()
    if(MSVC)
        # The portable functions that it warns of are meant.
        target_compile_definitions(${target} PRIVATE _CRT_SECURE_NO_WARNINGS)
        target_compile_options(${target} PRIVATE /W4 /utf-8 $<$<BOOL:${TEKO_WERROR}>:/WX>)
    else()
        target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow
                                                 $<$<BOOL:${TEKO_WERROR}>:-Werror>)
        if(TEKO_SANITIZE)
            target_compile_options(${target} PRIVATE -fsanitize=address,undefined -fno-omit-frame-pointer
                                                     -fno-sanitize-recover=undefined)
            target_link_options(${target} PRIVATE -fsanitize=address,undefined)
        endif()
    endif()
endfunction()

# What all code written against Qt needs.
function(teko_qt_basics target)
    teko_flags(${target})
    set_target_properties(${target} PROPERTIES AUTOMOC ON)
    target_include_directories(${target} PUBLIC ${PROJECT_SOURCE_DIR})
    target_compile_definitions(${target} PRIVATE
        QT_NO_FOREACH QT_NO_NARROWING_CONVERSIONS_IN_CONNECT QT_STRICT_ITERATORS)
endfunction()

# Strictness for the program; tests may write literals as they are.
function(teko_qt_flags target)
    teko_qt_basics(${target})
    target_compile_definitions(${target} PRIVATE
        QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY QT_NO_URL_CAST_FROM_STRING)
endfunction()

# teko_room(NAME SOURCES … LINKS …): one static library for one room of the house.
function(teko_room name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    target_link_libraries(${name} PUBLIC ${ARG_LINKS})
    teko_qt_flags(${name})
endfunction()

# A link to the system's ffmpeg under the name that the program runs, in the folder that holds the executables. Made when
# the target is built: configuring needs no ffmpeg.
function(teko_link_ffmpeg target)
    if(WIN32)
        # Nobody can tell where it is; the user lays it beside the programs.
        add_custom_target(${target})
        return()
    endif()
    set(link ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/ffmpeg.exe)
    add_custom_command(OUTPUT ${link} COMMAND ${CMAKE_COMMAND} -D LINK=${link} -P ${PROJECT_SOURCE_DIR}/cmake/LinkFfmpeg.cmake)
    add_custom_target(${target} ALL DEPENDS ${link})
endfunction()

# The environment of a test. Qt's software renderer and SVG pictures keep memory at the end of a process, in
# stacks that cannot be told from ours: leaks are looked for in all tests but those with windows.
function(teko_test_environment name has_windows)
    set(environment "QT_QPA_PLATFORM=offscreen;QT_QUICK_BACKEND=software;LC_ALL=C.UTF-8")
    if(TEKO_SANITIZE AND has_windows)
        list(APPEND environment "ASAN_OPTIONS=detect_leaks=0")
    endif()
    set_tests_properties(${name} PROPERTIES ENVIRONMENT "${environment}")
endfunction()

# teko_test(NAME LABEL unit|view|wire|e2e SOURCES … LINKS … [FOLDER dir] [TIMEOUT seconds]): one CTest entry.
# The program runs ffmpeg from its own folder, so FOLDER decides which ffmpeg.exe the test meets.
function(teko_test name)
    cmake_parse_arguments(ARG "" "LABEL;FOLDER;TIMEOUT" "SOURCES;LINKS" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE teko_testsupport Qt6::Test ${ARG_LINKS})
    teko_qt_basics(${name})
    if(NOT ARG_FOLDER)
        set(ARG_FOLDER ${PROJECT_BINARY_DIR}/bin)
    endif()
    if(NOT ARG_TIMEOUT)
        set(ARG_TIMEOUT 120)
    endif()
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${ARG_FOLDER})
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES LABELS ${ARG_LABEL} TIMEOUT ${ARG_TIMEOUT})
    set(has_windows OFF)
    if(ARG_LABEL MATCHES "view|e2e" OR "teko_views" IN_LIST ARG_LINKS)
        set(has_windows ON)
    endif()
    teko_test_environment(${name} ${has_windows})
endfunction()
