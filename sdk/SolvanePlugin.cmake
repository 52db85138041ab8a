# solvane_add_plugin(TARGET ID <identifier> VERSION <version> [NAME <name>]
#                    [OUTPUT <folder>] SOURCES ... [LIBS ...] [RESOURCES ...])
#
# Builds a plugin bundle: <OUTPUT>/<TARGET>.bundle/Contents with its Info.plist, its module under
# MacOS and its resources under Resources. OUTPUT is the current binary folder unless given.
#
#   ID         reverse domain name of the bundle (CFBundleIdentifier)
#   VERSION    of the bundle (CFBundleVersion)
#   NAME       for people (CFBundleName); the target's name unless given
#   LIBS       libraries besides Qt6::Widgets
#   RESOURCES  files, copied without their folder
#
# The module's root class carries
#     Q_PLUGIN_METADATA(IID mndPlugin_iid FILE "plugin.json")
# where plugin.json is written here and names the host API the bundle is built for.
#
# The public headers come with the target Solvane::Plugin.

function(solvane_add_plugin target)
    cmake_parse_arguments(PARSE_ARGV 1 ARG "" "ID;VERSION;NAME;OUTPUT" "SOURCES;LIBS;RESOURCES")
    foreach(needed ID VERSION SOURCES)
        if(NOT ARG_${needed})
            message(FATAL_ERROR "solvane_add_plugin(${target}): ${needed} is missing")
        endif()
    endforeach()
    if(ARG_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR "solvane_add_plugin(${target}): unknown: ${ARG_UNPARSED_ARGUMENTS}")
    endif()
    if(NOT ARG_NAME)
        set(ARG_NAME ${target})
    endif()
    if(NOT ARG_OUTPUT)
        set(ARG_OUTPUT ${CMAKE_CURRENT_BINARY_DIR})
    endif()
    set(contents ${ARG_OUTPUT}/${target}.bundle/Contents)
    set(generated ${CMAKE_CURRENT_BINARY_DIR}/${target}_generated)
    # The number of the host API; a host of another number does not load the module.
    set(api 6)

    foreach(name ID VERSION NAME)
        string(REPLACE "\\" "\\\\" json_${name} "${ARG_${name}}")
        string(REPLACE "\"" "\\\"" json_${name} "${json_${name}}")
        string(REPLACE "&" "&amp;" xml_${name} "${ARG_${name}}")
        string(REPLACE "<" "&lt;" xml_${name} "${xml_${name}}")
    endforeach()
    file(CONFIGURE OUTPUT ${generated}/plugin.json @ONLY CONTENT
        "{ \"api\": @api@, \"id\": \"@json_ID@\", \"version\": \"@json_VERSION@\" }\n")
    file(CONFIGURE OUTPUT ${contents}/Info.plist @ONLY CONTENT
[[<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0">
<dict>
    <key>CFBundleIdentifier</key>
    <string>@xml_ID@</string>
    <key>CFBundleName</key>
    <string>@xml_NAME@</string>
    <key>CFBundleExecutable</key>
    <string>@target@.so</string>
    <key>CFBundleVersion</key>
    <string>@xml_VERSION@</string>
    <key>CFBundlePackageType</key>
    <string>BNDL</string>
</dict>
</plist>
]])

    add_library(${target} MODULE ${ARG_SOURCES})
    target_compile_features(${target} PRIVATE cxx_std_20)
    target_include_directories(${target} PRIVATE ${generated})
    target_link_libraries(${target} PRIVATE Solvane::Plugin Qt6::Widgets ${ARG_LIBS})
    set_target_properties(${target} PROPERTIES
        AUTOMOC ON PREFIX "" SUFFIX ".so" CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON
        LIBRARY_OUTPUT_DIRECTORY ${contents}/MacOS)
    foreach(resource IN LISTS ARG_RESOURCES)
        get_filename_component(name ${resource} NAME)
        configure_file(${resource} ${contents}/Resources/${name} COPYONLY)
    endforeach()
endfunction()
