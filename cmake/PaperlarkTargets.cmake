# Settings every target of the project shares, attached per target rather than globally.

function(paperlark_defaults target)
    target_compile_features(${target} PUBLIC cxx_std_20)
    set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF)
    if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
        target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor)
    elseif(MSVC)
        target_compile_options(${target} PRIVATE /W4 /utf-8)
    endif()
    if(PAPERLARK_FUZZ)
        # Libraries are instrumented too, so that libFuzzer sees the coverage of the code it feeds.
        target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link,address,undefined)
        target_link_options(${target} PRIVATE -fsanitize=fuzzer-no-link,address,undefined)
    endif()
    if(PAPERLARK_SANITIZE)
        target_compile_options(${target} PRIVATE -fsanitize=${PAPERLARK_SANITIZE} -fno-omit-frame-pointer
                                                 -fno-sanitize-recover=all)
        target_link_options(${target} PRIVATE -fsanitize=${PAPERLARK_SANITIZE})
    endif()
endfunction()

# paperlark_library(NAME SOURCES ... DEPENDS ...): a static library with the project's settings,
# reachable as paperlark::NAME. Headers are included as "<folder>/<file>.h" from src/.
function(paperlark_library name)
    cmake_parse_arguments(ARG "" "" "SOURCES;DEPENDS;PRIVATE_DEPENDS" ${ARGN})
    add_library(paperlark_${name} STATIC ${ARG_SOURCES})
    add_library(paperlark::${name} ALIAS paperlark_${name})
    target_include_directories(paperlark_${name} PUBLIC "${PROJECT_SOURCE_DIR}/src")
    target_link_libraries(paperlark_${name} PUBLIC ${ARG_DEPENDS} PRIVATE ${ARG_PRIVATE_DEPENDS})
    paperlark_defaults(paperlark_${name})
endfunction()

# paperlark_windows_manifest(TARGET): gives a Windows program the suite's manifest
# (cmake/WindowsManifest.cmake); nothing elsewhere.
if(NOT WIN32)
    function(paperlark_windows_manifest target)
    endfunction()
endif()
