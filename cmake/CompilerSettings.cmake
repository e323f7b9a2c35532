# How everything here is compiled: C++20, hidden symbols, warnings as errors, hardening.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release)
endif()

set(ORVANEIP_INSTRUMENT "" CACHE STRING
    "Instrumentation: empty, coverage, or a list of sanitizers (address,undefined | thread)")
set_property(CACHE ORVANEIP_INSTRUMENT PROPERTY STRINGS "" address,undefined thread coverage)

add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion
                    -Wformat=2 -Werror -fstack-protector-strong)
set(ORVANEIP_FORTIFY none)  # needs optimisation, which the instrumented builds and Debug do without
# A sanitizer's runtime resolves its symbols at load time, so -z defs is for plain builds only.
add_link_options(-Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack -Wl,-z,text)
if(ORVANEIP_INSTRUMENT STREQUAL "coverage")
  # Clang's: a branch is a condition of the source. The counters are in mapped files, so those of
  # a killed process are kept.
  add_compile_options(-fprofile-instr-generate -fcoverage-mapping -fprofile-update=atomic
                      "SHELL:-mllvm -runtime-counter-relocation")
  add_link_options(-fprofile-instr-generate)
elseif(ORVANEIP_INSTRUMENT)
  # With a sanitizer GCC takes initialised objects for uninitialised ones.
  add_compile_options(-fsanitize=${ORVANEIP_INSTRUMENT} -fno-sanitize-recover=all
                      -fno-omit-frame-pointer -O1 $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
  add_link_options(-fsanitize=${ORVANEIP_INSTRUMENT})
else()
  # Level 3 also bounds what is allocated at run time; C libraries without it warn about it.
  include(CheckCXXSourceCompiles)
  set(CMAKE_REQUIRED_FLAGS "-O2 -Werror -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3")
  check_cxx_source_compiles("#include <cstdlib>\nint main() {}" ORVANEIP_HAS_FORTIFY_3)
  unset(CMAKE_REQUIRED_FLAGS)
  if(ORVANEIP_HAS_FORTIFY_3)
    set(ORVANEIP_FORTIFY $<IF:$<CONFIG:Debug>,none,3>)
  else()
    set(ORVANEIP_FORTIFY $<IF:$<CONFIG:Debug>,none,2>)
  endif()
  add_compile_options($<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE>
                      $<$<NOT:$<CONFIG:Debug>>:-D_FORTIFY_SOURCE=${ORVANEIP_FORTIFY}>)
  add_link_options(-Wl,-z,defs)
endif()

include_directories(${CMAKE_SOURCE_DIR})
