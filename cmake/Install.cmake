# cmake --install: libraries, headers, the command, the CMake package and orvaneip.pc.
include(CMakePackageConfigHelpers)
set(package_directory ${CMAKE_INSTALL_LIBDIR}/cmake/orvaneip)

set_target_properties(devcfg PROPERTIES INSTALL_RPATH $ORIGIN/../${CMAKE_INSTALL_LIBDIR})
set_target_properties(orvaneip PROPERTIES INSTALL_RPATH $ORIGIN)
install(TARGETS orvaneip orvaneplatform EXPORT orvaneip-targets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(TARGETS devcfg RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(EXPORT orvaneip-targets NAMESPACE orvaneip:: DESTINATION ${package_directory})

configure_package_config_file(cmake/orvaneip-config.cmake.in
  ${CMAKE_BINARY_DIR}/orvaneip-config.cmake INSTALL_DESTINATION ${package_directory})
write_basic_package_version_file(${CMAKE_BINARY_DIR}/orvaneip-config-version.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/orvaneip-config.cmake
              ${CMAKE_BINARY_DIR}/orvaneip-config-version.cmake
        DESTINATION ${package_directory})

file(RELATIVE_PATH pc_prefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
if(ORVANEIP_PLATFORM STREQUAL "embedded")
  set(pc_platform_libs -lorvaneplatform)
else()
  string(JOIN " " pc_platform_libs ${ORVANEIP_PLATFORM_LIBRARIES})
endif()
configure_file(cmake/orvaneip.pc.in ${CMAKE_BINARY_DIR}/orvaneip.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/orvaneip.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
