#!/usr/bin/env bash
# external_platform_test.sh SOURCE_DIRECTORY PLATFORM_LIBRARY: the library builds on a platform library
# that it is given, and then brings none of its own.
set -euo pipefail
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
configure() { cmake -S "$1" -B "$work" -G Ninja -DBUILD_TESTING=OFF -DORVANEIP_PLATFORM=external "${@:2}"; }

if configure "$1" >"$work/log" 2>&1; then
  echo "configured without the platform's libraries"
  exit 1
fi
configure "$1" -DORVANEIP_PLATFORM_LIBRARIES="$2" >/dev/null
cmake --build "$work" --target orvaneip >/dev/null
[ -e "$work/liborvaneip.so.0" ]
[ -z "$(find "$work" -name 'liborvaneplatform*')" ]
