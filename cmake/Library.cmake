# liborvaneip.so.0: the folders of the library, linked together.
set(folders foundation vault textfilter devtree devfilter schema service)
list(TRANSFORM folders REPLACE "(.+)" "$<TARGET_OBJECTS:\\1>" OUTPUT_VARIABLE objects)
add_library(orvaneip SHARED ${objects})
add_library(orvaneip::orvaneip ALIAS orvaneip)
target_include_directories(orvaneip INTERFACE
  $<BUILD_INTERFACE:${ORVANEIP_HEADER_STAGE}> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
target_link_libraries(orvaneip
  PUBLIC orvaneplatform json-c::json-c
  PRIVATE PkgConfig::uuid PkgConfig::sqlite3)
orvaneip_shared_library(orvaneip)
