# liborvaneip.so.0: the rooms of the library.
set(rooms foundation sqlite vault textfilter search devtree devfilter schema frames service)

orvaneip_public_headers(.)
set(sources)
foreach(room IN LISTS rooms)
  file(GLOB room_sources CONFIGURE_DEPENDS ${room}/*.cc ${room}/internal/*.cc)
  list(APPEND sources ${room_sources})
  orvaneip_public_headers(${room})
endforeach()

add_library(orvaneip SHARED ${sources})
add_library(orvaneip::orvaneip ALIAS orvaneip)
target_compile_definitions(orvaneip PRIVATE ORVANEIP_ROOT="${ORVANEIP_ROOT}")
target_include_directories(orvaneip INTERFACE
  $<BUILD_INTERFACE:${ORVANEIP_HEADER_STAGE}> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
target_link_libraries(orvaneip
  PUBLIC orvaneplatform json-c::json-c
  PRIVATE base PkgConfig::uuid PkgConfig::sqlite3)
target_precompile_headers(orvaneip PRIVATE <algorithm> <cstring> <string> <vector>)
orvaneip_shared_library(orvaneip)
