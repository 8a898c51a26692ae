#!/usr/bin/env bash
# Configures and builds into ./build (or $ZR_BUILD_DIR). Extra arguments go to cmake's configure step.
set -euo pipefail
cd "$(dirname "$0")/.."
build="${ZR_BUILD_DIR:-build}"
cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=Release -DZR_WARNINGS_AS_ERRORS=ON "$@" >/dev/null
cmake --build "$build" -j "$(nproc)"
