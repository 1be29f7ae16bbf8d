# paperlark_windows_manifest(TARGET): gives a Windows program the suite's manifest. It sets the
# process code page to UTF-8, so every ANSI function of the system (registry, files, windows, the
# clipboard's CF_TEXT) speaks the program's own UTF-8, and asks for the version 6 common controls.
# Every program needs it, test programs included: without it the code page is the system's
# (1252 in the West) and umlauts in file names and registry values turn into something else.

set(PAPERLARK_MANIFEST "${CMAKE_CURRENT_LIST_DIR}/windows/paperlark.manifest")
set(PAPERLARK_MANIFEST_RC "${PROJECT_BINARY_DIR}/paperlark_manifest.rc")
# 1 is CREATEPROCESS_MANIFEST_RESOURCE_ID, 24 is RT_MANIFEST.
file(WRITE "${PAPERLARK_MANIFEST_RC}" "1 24 \"${PAPERLARK_MANIFEST}\"\n")
set_source_files_properties("${PAPERLARK_MANIFEST_RC}" PROPERTIES OBJECT_DEPENDS "${PAPERLARK_MANIFEST}")

function(paperlark_windows_manifest target)
    target_sources(${target} PRIVATE "${PAPERLARK_MANIFEST_RC}")
endfunction()
