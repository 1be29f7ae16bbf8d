# Chooses the operating system's implementation of the platform services. Callers link
# paperlark::platform_native and never test the operating system themselves.
if(WIN32)
    add_subdirectory(${CMAKE_CURRENT_LIST_DIR}/win32)
else()
    add_subdirectory(${CMAKE_CURRENT_LIST_DIR}/posix)
endif()
