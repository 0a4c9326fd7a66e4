# The Debian package, made by CPack from the install rules (scripts/package).
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME brindlesee)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_VENDOR "The Brindlesee developers")
set(CPACK_PACKAGE_CONTACT "The Brindlesee developers <packages@brindlesee.org>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "photo albums laid out freely and published as HTML")
set(CPACK_PACKAGE_INSTALL_DIRECTORY /usr)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "https://brindlesee.org/")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
  "photo albums laid out freely and published as HTML
 Brindlesee lays pictures, texts, panorama viewers and search boxes freely
 on album pages, with backgrounds, music, buttons, frames and animations,
 and generates a self-contained HTML album with tree menu, covers,
 contents, picture index and search page, or a compact ZIP for mail.
 .
 Around the album stand picture tools: explorer, photo design studio,
 red-eye correction, resizing and splitting, panorama stitcher,
 multi-picture printing, video maker and scanner import. German and
 English.")
# The libraries we link are found by dpkg-shlibdeps (dpkg-dev); these are
# what the program loads or shows at run time without linking it: Qt's own
# dialogs in German, the metric-compatible "Arial", and xdg-open, through
# which Qt hands albums and addresses to the browser and mail program.
# Qt's X11 platform plugin ships in libqt6gui6, which shlibs already names.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "qt6-translations-l10n, fonts-liberation2, xdg-utils, shared-mime-info")
# Wayland sessions, other Qt platforms, and the scanner tools.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "qt6-wayland, qt6-qpa-plugins, sane-utils")
include(CPack)
