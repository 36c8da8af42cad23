# SPDX-License-Identifier: GPL-3.0-or-later
# The Debian package, which scripts/package makes with cpack.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME luma)
set(CPACK_PACKAGE_VENDOR "The LUMA developers")
set(CPACK_PACKAGE_CONTACT "The LUMA developers <developers@luma.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "publish web sites, keep their links right, edit their pages")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION web)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "https://www.luma.example/software/LUMA/")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "LUMA shows a site's folder on this computer and the one on the server, and
does the daily work between them: it publishes what is new or newer, with
rsync over ssh or by itself, keeps all links right when files are moved,
renamed or copied, finds links that lead nowhere and files that nothing leads
to, and edits a page as an outline of its elements beside the page itself.

lumactl has the same engines on the command line, for scripts.")

# Libraries are found by dpkg-shlibdeps; the programs that LUMA starts are listed here, as in scripts/packages.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
string(JOIN ", " CPACK_DEBIAN_PACKAGE_DEPENDS
  expect openssh-client php-cli procps rsync shared-mime-info zsh)
string(JOIN ", " CPACK_DEBIAN_PACKAGE_RECOMMENDS
  breeze-icon-theme curl "default-dbus-session-bus | dbus-session-bus" fuse3 gvfs gvfs-backends gvfs-fuse
  qt6-translations-l10n qt6-webengine-dev-tools)

# What Debian's policy asks of every package is done to the installed tree before it is packed.
set(LUMA_DEBIAN_FILES ${CMAKE_SOURCE_DIR}/packaging/debian)
configure_file(${LUMA_DEBIAN_FILES}/finish.cmake.in ${CMAKE_BINARY_DIR}/finish.cmake @ONLY)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_BINARY_DIR}/finish.cmake)

include(CPack)
