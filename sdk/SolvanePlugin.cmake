# solvane_add_plugin(TARGET ID <identifier> VERSION <version> [NAME <name>]
#                    [OUTPUT <folder>] SOURCES ... [LIBS ...] [RESOURCES ...])
#
# Builds a plugin bundle: <OUTPUT>/<TARGET>.bundle/Contents with its Info.plist, its module under
# MacOS and its resources under Resources. The module's root class carries
#     Q_PLUGIN_METADATA(IID mndPlugin_iid FILE "plugin.json")
# where plugin.json is written here and names the host API the bundle is built for.
set(SOLVANE_API_VERSION 6)

function(solvane_add_plugin target)
    cmake_parse_arguments(PARSE_ARGV 1 ARG "" "ID;VERSION;NAME;OUTPUT" "SOURCES;LIBS;RESOURCES")
    if(NOT ARG_NAME)
        set(ARG_NAME ${target})
    endif()
    if(NOT ARG_OUTPUT)
        set(ARG_OUTPUT ${CMAKE_CURRENT_BINARY_DIR})
    endif()
    set(contents ${ARG_OUTPUT}/${target}.bundle/Contents)
    set(generated ${CMAKE_CURRENT_BINARY_DIR}/${target}_generated)

    file(CONFIGURE OUTPUT ${generated}/plugin.json CONTENT
        "{ \"api\": ${SOLVANE_API_VERSION}, \"id\": \"@ARG_ID@\", \"version\": \"@ARG_VERSION@\" }\n" @ONLY)
    file(CONFIGURE OUTPUT ${contents}/Info.plist @ONLY CONTENT
[[<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0">
<dict>
    <key>CFBundleIdentifier</key>
    <string>@ARG_ID@</string>
    <key>CFBundleName</key>
    <string>@ARG_NAME@</string>
    <key>CFBundleExecutable</key>
    <string>@target@.so</string>
    <key>CFBundleVersion</key>
    <string>@ARG_VERSION@</string>
    <key>CFBundlePackageType</key>
    <string>BNDL</string>
</dict>
</plist>
]])

    add_library(${target} MODULE ${ARG_SOURCES})
    target_include_directories(${target} PRIVATE ${generated} ${SOLVANE_SDK_INCLUDE})
    target_link_libraries(${target} PRIVATE Qt6::Widgets ${ARG_LIBS})
    set_target_properties(${target} PROPERTIES
        AUTOMOC ON PREFIX "" SUFFIX ".so" CXX_VISIBILITY_PRESET hidden
        LIBRARY_OUTPUT_DIRECTORY ${contents}/MacOS)
    foreach(resource IN LISTS ARG_RESOURCES)
        get_filename_component(name ${resource} NAME)
        configure_file(${resource} ${contents}/Resources/${name} COPYONLY)
    endforeach()
endfunction()
