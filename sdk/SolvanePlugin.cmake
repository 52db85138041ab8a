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
#
# Symbols that nobody has fail the link, not the start. Add -Wl,-z,undefs to the target's link options
# for a module that has to have some.
#
# Built outside of Solvane's own tree, `cmake --install` (or `ninja install`) puts the bundle where
# added plugins live, below $HOME, in place of an older one.

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
    # Clang keeps a sanitizer's functions in the program: modules have them undefined.
    set(sanitized $<FILTER:$<TARGET_PROPERTY:${target},COMPILE_OPTIONS>,INCLUDE,-fsanitize>)
    if(NOT "${CMAKE_CXX_FLAGS} ${CMAKE_MODULE_LINKER_FLAGS}" MATCHES "-fsanitize")
        target_link_options(${target} PRIVATE $<$<STREQUAL:${sanitized},>:-Wl,-z,defs>)
    endif()
    get_target_property(isOutside Solvane::Plugin IMPORTED)
    if(isOutside)
        # A folder cannot take the place of another: the new one lies beside it, whole, before the old
        # one goes, and that comes back should the new one not get its name.
        file(CONFIGURE OUTPUT ${generated}/install.cmake @ONLY CONTENT
[[set(_name "@target@.bundle")
set(_folder "$ENV{DESTDIR}$ENV{HOME}/Library/Application Support/Solvane")
string(RANDOM LENGTH 8 _random)
set(_new "${_folder}/.${_name}.${_random}.new")
set(_old "${_folder}/.${_name}.${_random}.old")
file(COPY "@ARG_OUTPUT@/@target@.bundle/" DESTINATION "${_new}" USE_SOURCE_PERMISSIONS)
if(EXISTS "${_folder}/${_name}" OR IS_SYMLINK "${_folder}/${_name}")
    file(RENAME "${_folder}/${_name}" "${_old}")
endif()
file(RENAME "${_new}" "${_folder}/${_name}" RESULT _failure)
if(_failure)
    file(RENAME "${_old}" "${_folder}/${_name}" RESULT _ignored)
    file(REMOVE_RECURSE "${_new}")
    message(FATAL_ERROR "${_folder}/${_name} could not be put in place: ${_failure}")
endif()
file(REMOVE_RECURSE "${_old}")
message(STATUS "Installed: ${_folder}/${_name}")
]])
        install(SCRIPT ${generated}/install.cmake)
    endif()
    foreach(resource IN LISTS ARG_RESOURCES)
        get_filename_component(name ${resource} NAME)
        configure_file(${resource} ${contents}/Resources/${name} COPYONLY)
    endforeach()
endfunction()
