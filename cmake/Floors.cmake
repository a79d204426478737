# lumbra_floor(NAME [USES floor...] [LINKS target...] [WITHOUT folder...] [QML]): the folder NAME as one static library.
#
# Every source in the folder belongs to the floor, but for those in the folders that it is WITHOUT, which are plugins.
# What a floor may include is decided here and nowhere else: a floor sees the headers of the floors it uses, as
# "floor/Name.h", and no others, since each floor's headers are reachable only through an include folder of its own
# that travels with linking it. A floor that has QML files becomes one QML module, Lumbra.<Name>, that depends on
# those of the floors that it uses.
#
# SPDX-License-Identifier: GPL-3.0-or-later

set(LUMBRA_MAY_USE_platform "")
set(LUMBRA_MAY_USE_reader platform)
set(LUMBRA_MAY_USE_core platform)
set(LUMBRA_MAY_USE_library platform core)
set(LUMBRA_MAY_USE_understanding platform core library)
set(LUMBRA_MAY_USE_look "")
set(LUMBRA_MAY_USE_media platform core library look)
set(LUMBRA_MAY_USE_tidy platform core library understanding look media)
set(LUMBRA_MAY_USE_browsing platform core library understanding look media tidy)
set(LUMBRA_MAY_USE_shell platform core library understanding look media tidy browsing)
set(LUMBRA_MAY_USE_cli platform core)

# Makes "NAME/Header.h" includable for whoever links the returned include folder.
function(lumbra_floor_headers name out)
    set(folder ${CMAKE_BINARY_DIR}/include/${name})
    file(MAKE_DIRECTORY ${folder})
    file(CREATE_LINK ${CMAKE_SOURCE_DIR}/${name} ${folder}/${name} SYMBOLIC)
    set(${out} ${folder} PARENT_SCOPE)
endfunction()

function(lumbra_floor name)
    cmake_parse_arguments(PARSE_ARGV 1 FLOOR "QML" "" "USES;LINKS;WITHOUT")
    foreach(used IN LISTS FLOOR_USES)
        if(NOT used IN_LIST LUMBRA_MAY_USE_${name})
            message(FATAL_ERROR "The floor ${name} may not use ${used}; see the table in cmake/Floors.cmake.")
        endif()
    endforeach()

    set(target lumbra_${name})
    file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp ${CMAKE_CURRENT_SOURCE_DIR}/*.h)
    # A program's main stays outside its floor's library, so that tests can link the rest.
    list(REMOVE_ITEM sources ${CMAKE_CURRENT_SOURCE_DIR}/main.cpp)
    foreach(folder IN LISTS FLOOR_WITHOUT)
        list(FILTER sources EXCLUDE REGEX "^${CMAKE_CURRENT_SOURCE_DIR}/${folder}/")
    endforeach()

    if(FLOOR_QML)
        file(GLOB_RECURSE views CONFIGURE_DEPENDS RELATIVE ${CMAKE_CURRENT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR}/*.qml)
        foreach(view IN LISTS views)
            # A view is known by its type's name wherever in the floor its file lies.
            get_filename_component(type ${view} NAME)
            set_source_files_properties(${view} PROPERTIES QT_RESOURCE_ALIAS ${type})
            file(READ ${view} text LIMIT 2000)
            if(text MATCHES "pragma Singleton")
                set_source_files_properties(${view} PROPERTIES QT_QML_SINGLETON_TYPE TRUE)
            endif()
        endforeach()
        string(SUBSTRING ${name} 0 1 initial)
        string(TOUPPER ${initial} initial)
        string(SUBSTRING ${name} 1 -1 rest)
        set(modules QtQuick)
        foreach(used IN LISTS FLOOR_USES)
            get_target_property(uri lumbra_${used} QT_QML_MODULE_URI)
            if(uri)
                list(APPEND modules ${uri})
            endif()
        endforeach()
        set(options "")
        if(NOT LUMBRA_COMPILE_QML)
            list(APPEND options NO_CACHEGEN)
        endif()
        qt_add_qml_module(${target} STATIC URI Lumbra.${initial}${rest} VERSION 1.0 RESOURCE_PREFIX /qml
            OUTPUT_DIRECTORY ${QT_QML_OUTPUT_DIRECTORY}/Lumbra/${initial}${rest}
            SOURCES ${sources} QML_FILES ${views} DEPENDENCIES ${modules} ${options})
        # What is compiled ahead of time from views is not ours to keep free of warnings.
        get_target_property(all ${target} SOURCES)
        list(FILTER all INCLUDE REGEX "/\\.rcc/qmlcache/")
        set_source_files_properties(${all} PROPERTIES COMPILE_OPTIONS -w)
        # The generated registration includes headers by their bare names, whatever folder of the floor they lie in.
        file(GLOB_RECURSE folders LIST_DIRECTORIES true ${CMAKE_CURRENT_SOURCE_DIR}/*)
        list(FILTER folders EXCLUDE REGEX "\\.[a-z]+$")
        target_include_directories(${target} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR} ${folders})
        target_link_libraries(${target} PUBLIC Qt6::Quick)
    else()
        add_library(${target} STATIC ${sources})
    endif()

    lumbra_floor_headers(${name} headers)
    target_include_directories(${target} PUBLIC $<BUILD_INTERFACE:${headers}>)
    foreach(used IN LISTS FLOOR_USES)
        target_link_libraries(${target} PUBLIC lumbra_${used})
    endforeach()
    target_link_libraries(${target} PUBLIC Qt6::Core ${FLOOR_LINKS})
    set_target_properties(${target} PROPERTIES POSITION_INDEPENDENT_CODE ON)
    lumbra_use_precompiled_header(${target})
endfunction()

function(lumbra_use_precompiled_header target)
    target_precompile_headers(${target} REUSE_FROM lumbra_pch)
endfunction()
