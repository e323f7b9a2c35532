# What both shared libraries have in common: their version and what they export.
function(orvaneip_shared_library target)
  set(map ${CMAKE_SOURCE_DIR}/cmake/exports.map)
  set_target_properties(${target} PROPERTIES
    VERSION ${PROJECT_VERSION} SOVERSION 0 LINK_DEPENDS ${map})
  target_link_options(${target} PRIVATE -Wl,--version-script=${map})
endfunction()
