# How everything here is compiled: C++20, hidden symbols, warnings as errors, hardening.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release)
endif()

set(ORVANEIP_INSTRUMENT "" CACHE STRING
    "Instrumentation: empty, coverage, or a list of sanitizers (address,undefined | thread)")
set_property(CACHE ORVANEIP_INSTRUMENT PROPERTY STRINGS "" address,undefined thread coverage)

add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion
                    -Wformat=2 -Werror -fstack-protector-strong)
# A sanitizer's runtime resolves its symbols at load time, so -z defs is for plain builds only.
add_link_options(-Wl,-z,relro -Wl,-z,now)
if(ORVANEIP_INSTRUMENT STREQUAL "coverage")
  add_compile_options(--coverage -fprofile-update=atomic)
  add_link_options(--coverage)
elseif(ORVANEIP_INSTRUMENT)
  # vptr checks need the type information of SOCI classes that SOCI does not export; with a
  # sanitizer GCC takes initialised objects for uninitialised ones.
  add_compile_options(-fsanitize=${ORVANEIP_INSTRUMENT} -fno-sanitize=vptr -fno-sanitize-recover=all
                      -fno-omit-frame-pointer -O1 $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
  add_link_options(-fsanitize=${ORVANEIP_INSTRUMENT})
else()
  add_compile_options($<$<CONFIG:Release>:-U_FORTIFY_SOURCE> $<$<CONFIG:Release>:-D_FORTIFY_SOURCE=3>)
  add_link_options(-Wl,-z,defs)
endif()

include_directories(${CMAKE_SOURCE_DIR})
