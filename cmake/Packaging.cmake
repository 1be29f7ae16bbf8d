# A Debian package of the suite: `cpack -G DEB` in the build folder. It installs below /usr whatever
# prefix the build was configured with: the desktop entries are written for the prefix at install
# time, which DESTDIR packaging makes /usr, and the autostart entry goes to /etc/xdg/autostart.
set(CPACK_PACKAGE_NAME "paperlark")
set(CPACK_PACKAGE_VENDOR "tobrin")
set(CPACK_PACKAGE_CONTACT "Paperlark maintainers <paperlark@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "PDF printer assistant: asks what to do with each print job")
string(CONCAT CPACK_PACKAGE_DESCRIPTION
    "The per-user assistant of the Paperlark PDF printer suite. It watches the spool folders for\n"
    "PostScript print jobs, proposes a PDF file name from the document's title and lets the user\n"
    "save, mail, put on the desktop or merge each job. The converter turns the jobs into PDF or\n"
    "images with Ghostscript. The package adds the printer Paperlark to CUPS.")
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGING_INSTALL_PREFIX "/usr")
set(CPACK_INSTALL_PREFIX "/usr")
set(CPACK_SET_DESTDIR ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION "text")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "ghostscript, xdg-utils")
# CUPS makes the printer appear in every application's print dialog; cups-filters turns text and PDF
# into the PostScript the printer takes.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "cups, cups-filters, poppler-utils")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "cups-bsd")
# The maintainer scripts set up the spool folder, the machine spool folder and the printer; the
# trigger adds the printer when CUPS is installed after this package.
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA postinst postrm triggers conffiles)
list(TRANSFORM CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA PREPEND "${PROJECT_SOURCE_DIR}/data/debian/")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)
