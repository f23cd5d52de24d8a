# Every dependency comes from a Debian package (scripts/install-deps installs them).
find_package(PkgConfig REQUIRED)
pkg_check_modules(SQLITE3 REQUIRED IMPORTED_TARGET sqlite3)
pkg_check_modules(ICU REQUIRED IMPORTED_TARGET icu-uc icu-i18n)
pkg_check_modules(CMARK_GFM REQUIRED IMPORTED_TARGET libcmark-gfm)
pkg_check_modules(HTTPLIB REQUIRED IMPORTED_TARGET cpp-httplib)
pkg_check_modules(PANGOCAIRO REQUIRED IMPORTED_TARGET pangocairo cairo cairo-png cairo-svg cairo-pdf)
pkg_check_modules(LIBPNG REQUIRED IMPORTED_TARGET libpng)
# The extensions library has no pkg-config file; an imported target of ours
# stands for it, so that the exported package names no absolute path.
find_library(CMARK_GFM_EXTENSIONS_LIBRARY NAMES cmark-gfm-extensions REQUIRED)
add_library(QuillanWidgets::cmark_gfm_extensions UNKNOWN IMPORTED)
set_target_properties(QuillanWidgets::cmark_gfm_extensions PROPERTIES
  IMPORTED_LOCATION ${CMARK_GFM_EXTENSIONS_LIBRARY})
find_package(nlohmann_json 3 REQUIRED)
find_package(CLI11 REQUIRED)
find_package(Threads REQUIRED)
if(QUILLAN_BUILD_TESTS)
  find_package(GTest REQUIRED)
  include(GoogleTest)
endif()
if(QUILLAN_BUILD_BENCH)
  find_package(benchmark REQUIRED)
endif()
