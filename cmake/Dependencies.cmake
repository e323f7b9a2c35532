# The libraries that the build stands on: Debian 12 packages, listed in ./dev.
find_package(PkgConfig REQUIRED)
find_package(json-c REQUIRED)
find_package(pugixml REQUIRED)
pkg_check_modules(uuid REQUIRED IMPORTED_TARGET uuid)
pkg_check_modules(sqlite3 REQUIRED IMPORTED_TARGET sqlite3)
pkg_check_modules(smartcols REQUIRED IMPORTED_TARGET smartcols)

# SOCI and CLI11 bring no usable package files of their own in Debian 12.
function(orvaneip_require_header header package)
  string(MAKE_C_IDENTIFIER "ORVANEIP_HEADER_${header}" found)
  find_path(${found} ${header})
  if(NOT ${found})
    message(FATAL_ERROR "${header} is missing: install the package ${package}")
  endif()
endfunction()
orvaneip_require_header(soci/sqlite3/soci-sqlite3.h libsoci-dev)
orvaneip_require_header(boost/version.hpp libboost-dev)
orvaneip_require_header(CLI/CLI.hpp libcli11-dev)
find_library(SOCI_CORE_LIBRARY soci_core REQUIRED)
find_library(SOCI_SQLITE3_LIBRARY soci_sqlite3 REQUIRED)
add_library(soci INTERFACE)
target_link_libraries(soci INTERFACE ${SOCI_CORE_LIBRARY} ${SOCI_SQLITE3_LIBRARY}
                                     PkgConfig::sqlite3)

# Peers for the tests, the benchmarks and the fuzzers.
if(BUILD_TESTING OR ORVANEIP_BENCH OR ORVANEIP_FUZZ)
  pkg_check_modules(re2 REQUIRED IMPORTED_TARGET re2)
endif()
