# Cross compiling for 64-bit Windows with Debian's mingw-w64, POSIX threads flavour (std::thread and
# std::mutex need it).
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)

# The C++ runtime, libgcc and winpthread linked in: the programs need no DLL beyond the system's
# own, so they run from any folder (and under Wine, where a missing DLL ends a program with 53).
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")

# Test programs run under Wine. The prefix and the server are prepared by scripts/windows-tests.sh,
# which also sets WINEPREFIX, WINEDEBUG and WINEDLLOVERRIDES.
find_program(PAPERLARK_WINE NAMES wine wine64)
if(PAPERLARK_WINE)
    set(CMAKE_CROSSCOMPILING_EMULATOR "${PAPERLARK_WINE}")
endif()

# Every program carries a manifest that sets its code page to UTF-8 (cmake/WindowsManifest.cmake),
# so the ANSI functions of the system take and give the program's UTF-8 texts unchanged.
