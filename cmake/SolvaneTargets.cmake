# How every target of the tree is built: one language level, one set of warnings, one layout.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_AUTOMOC ON)

# The complete application folder, in the build tree as in the installed package.
set(SOLVANE_APP_DIR ${CMAKE_BINARY_DIR}/Solvane.app)
set(SOLVANE_RESOURCES_DIR ${SOLVANE_APP_DIR}/Contents/Resources)

add_library(solvane_flags INTERFACE)
target_compile_options(solvane_flags INTERFACE -Wall -Wextra -Wpedantic -Werror)
if(CMAKE_UNITY_BUILD)
    # Several sources in one: what is local to one of them looks like a header's to the compiler.
    target_compile_options(solvane_flags INTERFACE -Wno-subobject-linkage)
endif()
target_compile_definitions(solvane_flags INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS QT_DISABLE_DEPRECATED_BEFORE=0x060400)
target_include_directories(solvane_flags INTERFACE ${CMAKE_SOURCE_DIR})
if(SOLVANE_SANITIZE)
    add_compile_options(-fsanitize=${SOLVANE_SANITIZE} -fno-omit-frame-pointer
                        -fno-sanitize-recover=undefined)
    add_link_options(-fsanitize=${SOLVANE_SANITIZE})
endif()
if(SOLVANE_FUZZ)
    add_compile_options(-fsanitize=fuzzer-no-link)
endif()

# solvane_library(NAME SOURCES ... LIBS ...): a folder of the tree as a static library.
function(solvane_library name)
    cmake_parse_arguments(PARSE_ARGV 1 ARG "" "" "SOURCES;LIBS")
    add_library(${name} STATIC ${ARG_SOURCES})
    target_link_libraries(${name} PUBLIC solvane_flags ${ARG_LIBS})
endfunction()

# solvane_test(NAME [THREADS] SOURCES ... LIBS ...): a GoogleTest program, run headless. THREADS
# marks those that are worth running under the thread sanitizer: ./test.sh --preset tsan --threads
function(solvane_test name)
    cmake_parse_arguments(PARSE_ARGV 1 ARG "THREADS" "" "SOURCES;LIBS")
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE solvane_test_support ${ARG_LIBS})
    target_precompile_headers(${name} REUSE_FROM solvane_test_support)
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES ENVIRONMENT QT_QPA_PLATFORM=offscreen TIMEOUT 300)
    if(ARG_THREADS)
        set_tests_properties(${name} PROPERTIES LABELS threads)
        add_dependencies(threaded_tests ${name})
    endif()
endfunction()
