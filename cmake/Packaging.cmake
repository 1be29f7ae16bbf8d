# A Debian package of the suite: `cpack -G DEB` in the build folder (after a build with
# -DCMAKE_INSTALL_PREFIX=/usr, the prefix a package installs to).
set(CPACK_PACKAGE_NAME "paperlark")
set(CPACK_PACKAGE_VENDOR "tobrin")
set(CPACK_PACKAGE_CONTACT "Paperlark maintainers <paperlark@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "PDF printer assistant: asks what to do with each print job")
set(CPACK_PACKAGE_DESCRIPTION
    "The per-user assistant of the Paperlark PDF printer suite. It watches the spool folders for\n"
    "PostScript print jobs, proposes a PDF file name from the document's title and lets the user\n"
    "save, mail, put on the desktop or merge each job. The converter turns the jobs into PDF or\n"
    "images with Ghostscript.")
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGING_INSTALL_PREFIX "/usr")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION "text")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "ghostscript, xdg-utils")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "poppler-utils")
include(CPack)
