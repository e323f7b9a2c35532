# cmake --install: libraries, headers, the command, the CMake package and orvaneip.pc.
include(CMakePackageConfigHelpers)
set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/orvaneip)

install(TARGETS orvaneip orvaneplatform EXPORT orvaneip-targets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(TARGETS devcfg RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(EXPORT orvaneip-targets NAMESPACE orvaneip:: DESTINATION ${package_folder})

configure_package_config_file(cmake/orvaneip-config.cmake.in
  ${CMAKE_BINARY_DIR}/orvaneip-config.cmake INSTALL_DESTINATION ${package_folder})
write_basic_package_version_file(${CMAKE_BINARY_DIR}/orvaneip-config-version.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/orvaneip-config.cmake
              ${CMAKE_BINARY_DIR}/orvaneip-config-version.cmake
        DESTINATION ${package_folder})

configure_file(cmake/orvaneip.pc.in ${CMAKE_BINARY_DIR}/orvaneip.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/orvaneip.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
