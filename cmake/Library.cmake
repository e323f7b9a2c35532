# liborvaneip.so.0: the folders of the library, linked together.
add_library(orvaneip SHARED
  $<TARGET_OBJECTS:foundation> $<TARGET_OBJECTS:vault> $<TARGET_OBJECTS:textfilter>
  $<TARGET_OBJECTS:devtree> $<TARGET_OBJECTS:devfilter>)
add_library(orvaneip::orvaneip ALIAS orvaneip)
target_include_directories(orvaneip INTERFACE
  $<BUILD_INTERFACE:${ORVANEIP_HEADER_STAGE}> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
target_link_libraries(orvaneip PUBLIC orvaneplatform json-c::json-c PRIVATE PkgConfig::uuid)
orvaneip_shared_library(orvaneip)
