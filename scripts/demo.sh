#!/usr/bin/env bash
# Installs what is missing, builds, and runs the zrxml tool on the shipped sample documents.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/deps.sh
scripts/build.sh -DZR_BUILD_BENCHMARKS=OFF
build="${ZR_BUILD_DIR:-build}"
set -x
"$build/tools/zrxml" check samples/robotCell.xml samples/plant.xml
"$build/tools/zrxml" events samples/plant.xml
"$build/tools/zrxml" demo
