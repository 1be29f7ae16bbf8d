# Installs the build tree into a fresh staging folder, as a package build does:
#   cmake -DBUILD=<build tree> -DSTAGE=<folder> -P install_into.cmake
# Everything lands below STAGE, also what is installed under an absolute path (the autostart entry).
file(REMOVE_RECURSE "${STAGE}")
set(ENV{DESTDIR} "${STAGE}")
execute_process(COMMAND "${CMAKE_COMMAND}" --install "${BUILD}" --prefix /usr
                RESULT_VARIABLE result OUTPUT_QUIET)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "installing ${BUILD} into ${STAGE} failed: ${result}")
endif()
