#!/usr/bin/env bash
# Installs the built project into a scratch prefix, then builds a client against it twice:
# once through CMake's find_package and once through pkg-config.
set -euo pipefail
source_dir="$1"; build_dir="$2"
work="$build_dir/consumer-check"
rm -rf "$work"; mkdir -p "$work"
cmake --install "$build_dir" --prefix "$work/prefix" >/dev/null
cmake -S "$source_dir/tests/consumer" -B "$work/cmake" -DCMAKE_PREFIX_PATH="$work/prefix" >/dev/null
cmake --build "$work/cmake" >/dev/null
LD_LIBRARY_PATH="$work/prefix/lib:$work/prefix/lib64:${LD_LIBRARY_PATH:-}" "$work/cmake/consumer" 2>/dev/null
libdir=$(ls -d "$work"/prefix/lib*/pkgconfig | head -n 1)
flags=$(PKG_CONFIG_PATH="$libdir" pkg-config --cflags --libs zrXml)
# shellcheck disable=SC2086
g++ -std=c++17 "$source_dir/tests/consumer/consumer.cpp" -o "$work/consumer-pc" $flags
LD_LIBRARY_PATH="$work/prefix/lib:$work/prefix/lib64:${LD_LIBRARY_PATH:-}" "$work/consumer-pc" 2>/dev/null
echo "1 passed, 0 failed"
