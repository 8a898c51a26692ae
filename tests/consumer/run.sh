#!/usr/bin/env bash
# Installs the built project into a fresh prefix, then builds a client against it twice, once through
# CMake's find_package and once through pkg-config, and runs each without any environment variable:
# the installed libraries find each other through their own run paths.
set -euo pipefail
source_dir="$1"; build_dir="$2"
work="$build_dir/consumer-check"
rm -rf "$work"; mkdir -p "$work"
cmake --install "$build_dir" --prefix "$work/prefix" >/dev/null
cmake -S "$source_dir/tests/consumer" -B "$work/cmake" -DCMAKE_PREFIX_PATH="$work/prefix" >/dev/null
cmake --build "$work/cmake" >/dev/null
env -i "$work/cmake/consumer" >/dev/null
libdir=$(ls -d "$work"/prefix/lib*/pkgconfig | head -n 1)
flags=$(PKG_CONFIG_PATH="$libdir" pkg-config --cflags --libs zrXml)
# shellcheck disable=SC2086
g++ -std=c++17 "$source_dir/tests/consumer/consumer.cpp" -o "$work/consumer-pc" $flags
env -i "$work/consumer-pc" >/dev/null
# Nothing but the package's own libraries lands directly in the library directory.
extra=$(ls "$(dirname "$libdir")" | grep -v -e '^libzrXml\.' -e '^libzrStream\.' -e '^libzrFoundCore\.' -e '^cmake$' -e '^pkgconfig$' -e '^zrXml$' || true)
if [ -n "$extra" ]; then echo "not part of the package: $extra" >&2; exit 1; fi
echo "1 passed, 0 failed"
