#!/usr/bin/env bash
# Installs what is missing, builds, and runs the whole test suite.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/deps.sh
scripts/build.sh -DZR_BUILD_BENCHMARKS=OFF -DZR_BUILD_TESTS=ON
build="${ZR_BUILD_DIR:-build}"
ctest --test-dir "$build" --output-on-failure -j "$(nproc)"
