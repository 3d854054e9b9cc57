# What every target of the project is built with, and the one function by which a folder under src/ becomes a library.

add_library(velmora_options INTERFACE)
target_compile_definitions(velmora_options INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
    QT_DISABLE_DEPRECATED_BEFORE=0x060400
    $<$<NOT:$<CONFIG:Debug>>:NDEBUG>)
target_compile_options(velmora_options INTERFACE
    -Wall -Wextra -Wpedantic -Wnon-virtual-dtor -Woverloaded-virtual -Werror=return-type -Wno-psabi
    $<$<CXX_COMPILER_ID:GNU>:-fcoroutines>)
if(VELMORA_SANITIZE)
    target_compile_options(velmora_options INTERFACE
        -fsanitize=${VELMORA_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(velmora_options INTERFACE -fsanitize=${VELMORA_SANITIZE})
endif()

# Precompiled headers: one without widgets for everything below ui, one with them; the tests add theirs to both.
function(velmora_precompiled name header)
    file(GENERATE OUTPUT ${CMAKE_BINARY_DIR}/${name}.cpp CONTENT "")
    add_library(${name} STATIC ${CMAKE_BINARY_DIR}/${name}.cpp)
    set_target_properties(${name} PROPERTIES AUTOMOC OFF)
    target_link_libraries(${name} PUBLIC velmora_options ${ARGN})
    target_precompile_headers(${name} PRIVATE ${CMAKE_SOURCE_DIR}/cmake/${header})
endfunction()
velmora_precompiled(velmora_pch_core PrecompiledCore.h Qt6::Core Qt6::Gui)
velmora_precompiled(velmora_pch_widgets PrecompiledWidgets.h Qt6::Core Qt6::Gui Qt6::Widgets)

# velmora_library(FOLDER SOURCES ... DEPENDS ... [PRIVATE_DEPENDS ...] [WIDGETS])
# FOLDER is the path below src/. The library's headers are reached through a root of its own that holds nothing but a
# link to this folder, so that only what DEPENDS names can be included.
function(velmora_library folder)
    cmake_parse_arguments(arg "WIDGETS" "" "SOURCES;DEPENDS;PRIVATE_DEPENDS" ${ARGN})
    string(REPLACE "/" "_" flat ${folder})
    set(target velmora_${flat})
    set(root ${CMAKE_BINARY_DIR}/roots/${flat})
    get_filename_component(parent ${root}/${folder} DIRECTORY)
    file(MAKE_DIRECTORY ${parent})
    file(CREATE_LINK ${CMAKE_SOURCE_DIR}/src/${folder} ${root}/${folder} SYMBOLIC)
    add_library(${target} STATIC ${arg_SOURCES})
    target_include_directories(${target} PUBLIC ${root})
    target_link_libraries(${target} PUBLIC velmora_options ${arg_DEPENDS} PRIVATE ${arg_PRIVATE_DEPENDS})
    if(arg_WIDGETS)
        target_link_libraries(${target} PUBLIC Qt6::Core Qt6::Gui Qt6::Widgets)
        target_precompile_headers(${target} REUSE_FROM velmora_pch_widgets)
    else()
        target_link_libraries(${target} PUBLIC Qt6::Core Qt6::Gui)
        target_precompile_headers(${target} REUSE_FROM velmora_pch_core)
    endif()
endfunction()
