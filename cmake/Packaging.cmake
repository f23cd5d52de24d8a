# `cpack -G DEB`: a Debian package of the command, its man page and completion
# (the `command` component). Its library dependencies are read off the binary
# by dpkg-shlibdeps; the fonts it draws with are a runtime dependency no binary
# names.
set(CPACK_PACKAGE_NAME quillan-widgets)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "Quillan developers <developers@quillan.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "the Quillan journal's widgets off the phone")
set(CPACK_PACKAGE_DESCRIPTION
    "Reads the Quillan journal and produces its widgets' timelines and view trees, draws them to PNG, SVG or PDF and answers taps.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_COMPONENTS_ALL command)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING ALL_COMPONENTS_IN_ONE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "fonts-inter, fonts-noto-core, fonts-noto-cjk, fonts-noto-color-emoji")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "bash-completion")
include(CPack)
