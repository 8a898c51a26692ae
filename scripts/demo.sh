#!/usr/bin/env bash
# Installs what is missing, builds, and runs the zrxml tool on the shipped sample documents.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/deps.sh
scripts/build.sh -DZR_BUILD_BENCHMARKS=OFF -DZR_BUILD_TESTS=OFF
build="${ZR_BUILD_DIR:-build}"
set -x
"$build/tools/zrxml" check samples/robotCell.xml samples/plant.xml
"$build/tools/zrxml" events samples/plant.xml
"$build/tools/zrxml" demo
"$build/tools/zrxml" demo --formula
mkdir -p "$build/schemas"
"$build/tools/zrxml" schema "$build/schemas"
xmllint --noout --schema "$build/schemas/robotCell.cell.xsd" samples/robotCell.xml
