# Warnings, sanitizers, linker and the one shared precompiled header.
#
# SPDX-License-Identifier: GPL-3.0-or-later

add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror)
# Some libraries ask for it and some do not; the precompiled header must be made with the flags that it is used with.
add_compile_options(-pthread)
add_compile_options($<$<CXX_COMPILER_ID:GNU>:-Wno-error=invalid-pch>)
add_compile_definitions(QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_FOREACH QT_NO_KEYWORDS)

if(LUMBRA_SANITIZE)
    add_compile_options(-fsanitize=${LUMBRA_SANITIZE} -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${LUMBRA_SANITIZE})
    # With instrumented code GCC 12 sees uninitialised members in the empty state of variants and optionals.
    add_compile_options($<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
endif()

find_program(LUMBRA_CCACHE ccache)
if(LUMBRA_CCACHE)
    # The sloppiness lets the cache serve files that use a precompiled header.
    set(CMAKE_CXX_COMPILER_LAUNCHER
        ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime ${LUMBRA_CCACHE})
    add_compile_options($<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>)
endif()

find_program(LUMBRA_LLD ld.lld)
if(LUMBRA_LLD)
    add_link_options(-fuse-ld=lld)
endif()

# One precompiled header for everything that uses Qt Core: it costs 18 seconds once and saves two a file.
set(LUMBRA_PRECOMPILED_HEADERS
    <QtCore/QByteArray> <QtCore/QFuture> <QtCore/QHash> <QtCore/QJsonDocument> <QtCore/QJsonObject> <QtCore/QList>
    <QtCore/QObject> <QtCore/QProperty> <QtCore/QString> <QtCore/QTimer> <QtCore/QVariant>
    <algorithm> <functional> <map> <memory> <optional> <set> <string> <string_view> <unordered_map> <vector>)
file(WRITE ${CMAKE_BINARY_DIR}/pch.cpp "// Only carries the precompiled header.\n")
add_library(lumbra_pch STATIC ${CMAKE_BINARY_DIR}/pch.cpp)
target_link_libraries(lumbra_pch PUBLIC Qt6::Core)
target_precompile_headers(lumbra_pch PRIVATE ${LUMBRA_PRECOMPILED_HEADERS})
set_target_properties(lumbra_pch PROPERTIES POSITION_INDEPENDENT_CODE ON)

set(CMAKE_AUTOMOC_MOC_OPTIONS --include=${CMAKE_SOURCE_DIR}/cmake/MocPrelude.h)
