# The installed headers. Sources include each other from the project's root ("vault/data_source.h");
# the installed copies say "orvaneip/vault/data_source.h", so that -I PREFIX/include is enough.
# The copies are staged in the build folder, where the tests use them as an outside program would.
set(ORVANEIP_HEADER_STAGE ${CMAKE_BINARY_DIR}/include)

function(orvaneip_public_headers)
  foreach(header IN LISTS ARGN)
    file(RELATIVE_PATH name ${CMAKE_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR}/${header})
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${header})
    file(READ ${header} text)
    string(REPLACE "#include \"" "#include \"orvaneip/" text "${text}")
    file(CONFIGURE OUTPUT ${ORVANEIP_HEADER_STAGE}/orvaneip/${name} CONTENT "${text}" @ONLY)
    get_filename_component(folder ${name} DIRECTORY)
    install(FILES ${ORVANEIP_HEADER_STAGE}/orvaneip/${name}
            DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/orvaneip/${folder})
  endforeach()
endfunction()

orvaneip_public_headers(orvaneip.h)
