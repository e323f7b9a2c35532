# The libraries that the build needs: Debian 12 packages, listed in ./dev.
find_package(PkgConfig REQUIRED)
find_package(json-c REQUIRED)
find_package(pugixml REQUIRED)
find_package(SQLiteCpp REQUIRED)
pkg_check_modules(uuid REQUIRED IMPORTED_TARGET uuid)
pkg_check_modules(sqlite3 REQUIRED IMPORTED_TARGET sqlite3)
pkg_check_modules(smartcols REQUIRED IMPORTED_TARGET smartcols)

# CLI11 brings no usable package file of its own in Debian 12.
function(orvaneip_require_header header package)
  string(MAKE_C_IDENTIFIER "ORVANEIP_HEADER_${header}" found)
  find_path(${found} ${header})
  if(NOT ${found})
    message(FATAL_ERROR "${header} is missing: install the package ${package}")
  endif()
endfunction()
orvaneip_require_header(CLI/CLI.hpp libcli11-dev)

# Peers for the tests, the benchmarks and the fuzzers.
if(BUILD_TESTING OR ORVANEIP_BENCH OR ORVANEIP_FUZZ)
  pkg_check_modules(re2 REQUIRED IMPORTED_TARGET re2)
endif()
