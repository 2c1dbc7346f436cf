# SPDX-License-Identifier: Apache-2.0
# Every target links vandrel_options; nothing sets flags of its own.
option(VANDREL_WARNINGS_AS_ERRORS
    "Stop at warnings; off for those who only build, with compilers not tried here" OFF)
add_library(vandrel_options INTERFACE)
target_compile_features(vandrel_options INTERFACE cxx_std_20)
target_compile_options(vandrel_options INTERFACE
    -Wall -Wextra -Wpedantic $<$<BOOL:${VANDREL_WARNINGS_AS_ERRORS}>:-Werror>
    -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-qual
    -Wduplicated-cond -Wlogical-op -Wvla)
if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    target_compile_options(vandrel_options INTERFACE -Wno-unknown-warning-option)
endif()
target_compile_definitions(vandrel_options INTERFACE
    QT_NO_KEYWORDS
    QT_NO_CAST_FROM_ASCII
    QT_NO_CAST_TO_ASCII
    QT_NO_CAST_FROM_BYTEARRAY
    QT_NO_URL_CAST_FROM_STRING
    QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
    QT_NO_FOREACH
    QT_STRICT_ITERATORS
    QT_DISABLE_DEPRECATED_BEFORE=0x060400
    VANDREL_VERSION="${PROJECT_VERSION}")

if(VANDREL_SANITIZE)
    target_compile_options(vandrel_options INTERFACE
        -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer
        # GCC 12 reports false overflows in instrumented code.
        -Wno-maybe-uninitialized -Wno-stringop-overflow)
    target_link_options(vandrel_options INTERFACE -fsanitize=address,undefined)
endif()

if(CMAKE_UNITY_BUILD)
    # Joined sources cause false warnings; the other builds check for both.
    target_compile_options(vandrel_options INTERFACE -Wno-shadow -Wno-subobject-linkage)
endif()

if(VANDREL_FUZZ)
    target_compile_options(vandrel_options INTERFACE -fsanitize=fuzzer-no-link)
endif()

set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_AUTOMOC ON)
# No header is generated, so moc need not wait for the libraries.
set(CMAKE_AUTOGEN_ORIGIN_DEPENDS OFF)

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
    # The sloppiness lets it cache objects that use a precompiled header.
    set(CMAKE_CXX_COMPILER_LAUNCHER
        ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${CCACHE_PROGRAM})
    add_compile_options($<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>)
endif()
