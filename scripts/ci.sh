#!/usr/bin/env bash
# What CI runs (.ci/run). Stages, each timed:
#   release  the whole suite in Release (scripts/test.sh, into ./build)
#   asan     the whole suite under AddressSanitizer and UndefinedBehaviorSanitizer (./build-asan)
#   tsan     the tests labelled "threads" under ThreadSanitizer (./build-tsan)
#   fuzz     each libFuzzer target for ZR_FUZZ_SECONDS (default 60) on its seeds and dictionary (./build-fuzz)
# A failing test, a sanitizer report (even one in a process whose exit status a test ignores) or a fuzz
# finding fails the run. ZR_CI_STAGES picks stages (default "release asan tsan fuzz").
set -euo pipefail
cd "$(dirname "$0")/.."
root="$PWD"
stages="${ZR_CI_STAGES:-release asan tsan fuzz}"
fuzz_seconds="${ZR_FUZZ_SECONDS:-60}"
jobs="$(nproc)"

scripts/deps.sh --ci

common=(-DZR_WARNINGS_AS_ERRORS=ON -DZR_BUILD_BENCHMARKS=OFF)
started=$SECONDS
timings=()

timed() {  # timed NAME COMMAND...
  local name="$1" from=$SECONDS
  shift
  echo "=== $name" >&2
  "$@"
  timings+=("$name $((SECONDS - from)) s")
}

# Sanitizer reports go to files as well as failing their process: a report in a tool run whose exit
# status a test does not look at still fails the stage.
sanitizer_logs() {  # sanitizer_logs DIR: fails when DIR holds a report
  local reports
  reports="$(find "$1" -type f 2>/dev/null)"
  [ -z "$reports" ] && return 0
  echo "sanitizer reports:" >&2
  for report in $reports; do cat "$report" >&2; done
  return 1
}

release() {
  scripts/test.sh
}

asan() {
  local build=build-asan logs="$root/build-asan/sanitizer-reports"
  cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=Debug -DZR_SANITIZE=ON "${common[@]}" >/dev/null
  cmake --build "$build" -j "$jobs"
  rm -rf "$logs" && mkdir -p "$logs"
  local status=0
  ASAN_OPTIONS="log_path=$logs/asan:exitcode=86:detect_leaks=1:strict_string_checks=1" \
  UBSAN_OPTIONS="log_path=$logs/ubsan:print_stacktrace=1:halt_on_error=1" \
    ctest --test-dir "$build" --output-on-failure -j "$jobs" || status=$?
  sanitizer_logs "$logs" || status=1
  return $status
}

tsan() {
  local build=build-tsan logs="$root/build-tsan/sanitizer-reports"
  cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DZR_SANITIZE_THREAD=ON -DZR_BUILD_TOOLS=OFF \
    "${common[@]}" >/dev/null
  cmake --build "$build" -j "$jobs" --target zr_threaded_tests
  rm -rf "$logs" && mkdir -p "$logs"
  local status=0
  TSAN_OPTIONS="log_path=$logs/tsan:exitcode=86:halt_on_error=1" \
    ctest --test-dir "$build" --output-on-failure -j "$jobs" -L threads --no-tests=ignore || status=$?
  sanitizer_logs "$logs" || status=1
  return $status
}

fuzz() {
  local build=build-fuzz
  # -O1 with line tables: quick to build, and a finding's stack still names file and line.
  cmake -S . -B "$build" -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DCMAKE_CXX_FLAGS_RELWITHDEBINFO="-O1 -gline-tables-only" -DZR_BUILD_FUZZERS=ON -DZR_BUILD_TESTS=OFF \
    -DZR_BUILD_TOOLS=OFF "${common[@]}" >/dev/null
  cmake --build "$build" -j "$jobs" --target fuzz_tokenizer fuzz_model fuzz_include
  local run="$root/$build/fuzz-run" targets=(fuzz_tokenizer fuzz_model fuzz_include) pids=() status=0
  rm -rf "$run" && mkdir -p "$run/artifacts"
  # The targets run side by side, each in a directory of its own (fuzz_include writes its documents
  # there). New inputs go to the first corpus directory, so the seeds stay as shipped; a crash, a leak,
  # undefined behaviour, an input slower than 30 s or more than 2 GiB of memory ends a run with a finding.
  for target in "${targets[@]}"; do
    mkdir -p "$run/$target/corpus"
    (cd "$run/$target" && exec "$root/$build/fuzz/$target" corpus "$root/$build/fuzz/seeds" \
      -dict="$root/fuzz/zrxml.dict" -max_len=65536 -max_total_time="$fuzz_seconds" -timeout=30 \
      -rss_limit_mb=2048 -artifact_prefix="$run/artifacts/$target-" -print_final_stats=1 >"$run/$target.log" 2>&1) &
    pids+=($!)
  done
  for i in "${!targets[@]}"; do
    local target="${targets[$i]}"
    if ! wait "${pids[$i]}"; then
      tail -n 60 "$run/$target.log" >&2
      echo "fuzz finding in $target: $(ls "$run/artifacts")" >&2
      status=1
    fi
    grep -E "^stat::(number_of_executed_units|peak_rss_mb)" "$run/$target.log" | sed "s/^/$target /" >&2 || true
  done
  return $status
}

for stage in $stages; do
  case "$stage" in
    release | asan | tsan | fuzz) timed "$stage" "$stage" ;;
    *) echo "unknown stage: $stage" >&2; exit 64 ;;
  esac
done
printf '%s\n' "${timings[@]}" "total $((SECONDS - started)) s" >&2
