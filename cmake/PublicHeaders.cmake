# The installed headers: those that are directly in a room of the library or in platform/. What is in
# an internal/ directory, base/, platform/embedded/ or cli/ is not installed.
#
# Sources include each other from the project's root ("vault/lookups.h"); the installed copies say
# "orvaneip/vault/lookups.h", so that -I PREFIX/include is enough. The copies are staged in the build
# directory, where the tests use them as an outside program would.
set(ORVANEIP_HEADER_STAGE ${CMAKE_BINARY_DIR}/include)

function(orvaneip_public_headers directory)
  file(GLOB headers CONFIGURE_DEPENDS RELATIVE ${CMAKE_SOURCE_DIR} ${directory}/*.h)
  foreach(header IN LISTS headers)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${header})
    file(READ ${header} text)
    string(REPLACE "#include \"" "#include \"orvaneip/" text "${text}")
    file(CONFIGURE OUTPUT ${ORVANEIP_HEADER_STAGE}/orvaneip/${header} CONTENT "${text}" @ONLY)
    get_filename_component(subdirectory ${header} DIRECTORY)
    install(FILES ${ORVANEIP_HEADER_STAGE}/orvaneip/${header}
            DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/orvaneip/${subdirectory})
  endforeach()
endfunction()
