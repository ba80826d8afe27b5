# The Debian package: `cpack` in a build tree, or tools/package, which builds first.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME quorvia)
set(CPACK_PACKAGE_VENDOR Halvexa)
set(CPACK_PACKAGE_CONTACT "Halvexa <packages@halvexa.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "image viewer that is quick to the picture")
set(CPACK_PACKAGE_DESCRIPTION
"Quorvia shows a picture or a folder of pictures in one window, fits them or
shows them pixel by pixel, walks on with the arrow keys, runs them as a slide
show and turns the pages of documents with several of them.
.
It keeps playlists, turns, resizes and converts pictures, prints them and takes
new ones from scanners.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_STRIP_FILES ON)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "https://www.halvexa.example/quorvia/")
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# What is loaded while the program runs, which the tool behind the line above does not see.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libcups2, libheif1, libjxl0.7")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "xdg-utils, desktop-file-utils, hicolor-icon-theme, qt6-wayland, fonts-dejavu-core")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "cups, sane-utils, sqlite3")
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA
  ${CMAKE_SOURCE_DIR}/data/package/prerm ${CMAKE_SOURCE_DIR}/data/package/postrm)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)
