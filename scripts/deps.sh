#!/usr/bin/env bash
# Installs the Debian packages the build, the tests and the benchmarks need, when any is missing.
# Optional peers for the benchmarks (expat, pugixml, Boost.Serialization, cereal) are installed too; the
# library never needs them. libxml2 is required: the zrxml tool validates documents with it
# (check --schema) and the tests run that; the library itself never links it.
# With --ci it also installs what CI's extra stages need (scripts/ci.sh): clang and its libFuzzer runtime.
# g++ brings the address, undefined-behaviour and thread sanitizers' runtimes itself.
set -euo pipefail

required=(g++ cmake make pkg-config python3 zlib1g-dev libboost-dev libcurl4-openssl-dev
          libgtest-dev libgmock-dev libbenchmark-dev libxml2-utils libxml2-dev)
if [ "${1:-}" = "--ci" ]; then
  required+=(clang libclang-rt-dev)
fi
optional=(libexpat1-dev libpugixml-dev libboost-serialization-dev libcereal-dev)

missing=()
for pkg in "${required[@]}" "${optional[@]}"; do
  dpkg-query -W -f='${Status}' "$pkg" 2>/dev/null | grep -q "install ok installed" || missing+=("$pkg")
done
[ ${#missing[@]} -eq 0 ] && exit 0

SUDO=""
[ "$(id -u)" -ne 0 ] && SUDO="sudo"
echo "Installing: ${missing[*]}" >&2
$SUDO apt-get update -qq
# Required packages must install; optional ones are tried one by one so a missing peer never stops the build.
req_missing=()
for pkg in "${missing[@]}"; do
  [[ " ${required[*]} " == *" $pkg "* ]] && req_missing+=("$pkg")
done
if [ ${#req_missing[@]} -gt 0 ]; then
  DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq "${req_missing[@]}" >&2
fi
for pkg in "${missing[@]}"; do
  [[ " ${required[*]} " == *" $pkg "* ]] && continue
  DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq "$pkg" >&2 || echo "optional package $pkg not installed" >&2
done
