#!/usr/bin/env bash
# install_test.sh SOURCE_DIRECTORY BUILD_DIRECTORY SANITIZERS: the example of the README builds and runs
# against the installed tree, through the CMake package and through pkg-config.
set -euo pipefail
source=$1 build=$2 sanitizers=${3-}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
prefix=$work/prefix
flags=(-Wall -Wextra -Wpedantic -Werror)
[ -z "$sanitizers" ] || flags+=("-fsanitize=$sanitizers")

cmake --install "$build" --prefix "$prefix" >/dev/null
mkdir "$work/outside"
sed -n '/^```cpp$/,/^```$/{/^```/d;p}' "$source/README.md" >"$work/outside/example.cc"
[ -s "$work/outside/example.cc" ]

run() { # run PROGRAM: the example adds a data source and lists it
  ORVANE_LOG=off ORVANE_VAULT=$work/$(basename "$1").db "$1" | tee "$work/output"
  grep -q '"vault_name": *"Till 1"' "$work/output"
}

# Each installed header compiles by itself, with the include directory of the installation only.
(cd "$prefix/include" && find orvaneip -name '*.h') | while read -r header; do
  echo "#include <$header>" |
    g++ -std=c++20 "${flags[@]}" -fsyntax-only -I "$prefix/include" -x c++ -
done

cat >"$work/outside/CMakeLists.txt" <<'CMAKE'
cmake_minimum_required(VERSION 3.25)
project(outside LANGUAGES CXX)
set(CMAKE_CXX_STANDARD 20)
find_package(orvaneip REQUIRED)
add_executable(packaged example.cc)
target_link_libraries(packaged PRIVATE orvaneip::orvaneip)
CMAKE
cmake -S "$work/outside" -B "$work/outside/build" -DCMAKE_PREFIX_PATH="$prefix" \
  -DCMAKE_CXX_FLAGS="${flags[*]}" >/dev/null
cmake --build "$work/outside/build" >/dev/null
run "$work/outside/build/packaged"

export PKG_CONFIG_PATH=$(dirname "$(find "$prefix" -name orvaneip.pc)")
# shellcheck disable=SC2046
g++ -std=c++20 "${flags[@]}" -o "$work/configured" "$work/outside/example.cc" \
  $(pkg-config --cflags --libs orvaneip) -Wl,-rpath,"$(pkg-config --variable=libdir orvaneip)"
run "$work/configured"
