# base/: small tools, linked into both libraries and the command. Hidden, so each has its own copy.
file(GLOB base_sources CONFIGURE_DEPENDS base/*.cc)
add_library(base STATIC ${base_sources})
target_link_libraries(base PUBLIC json-c::json-c)
