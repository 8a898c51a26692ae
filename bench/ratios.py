#!/usr/bin/env python3
"""Ratio table from a bench_arrays or bench_objects JSON run: for every benchmark and size, our CPU time
per iteration over each peer's. Below 1 we are faster, above 1 the peer is. A run with repetitions
(--benchmark_repetitions=N, best with --benchmark_enable_random_interleaving=true) is read through the
median of each benchmark's repetitions.

    bench_arrays --benchmark_min_time=0.1 --benchmark_format=json > run.json
    bench/ratios.py run.json            # the largest size of each benchmark
    bench/ratios.py run.json --all      # every size
"""
import json
import sys

OURS = "zrXml"


def main(argv):
    if len(argv) < 2:
        print(__doc__.strip())
        return 2
    with open(argv[1]) as stream:
        runs = json.load(stream)["benchmarks"]
    times = {}  # (benchmark, size) -> {library: cpu time}
    medians = any(run.get("aggregate_name") == "median" for run in runs)
    for run in runs:
        if run.get("error_occurred"):
            continue
        if medians != (run.get("run_type") == "aggregate" and run.get("aggregate_name") == "median"):
            continue
        if not medians and run.get("run_type") != "iteration":
            continue
        parts = run.get("run_name", run["name"]).split("/")
        if len(parts) != 3:
            continue
        benchmark, library, size = parts[0], parts[1], int(parts[2])
        times.setdefault((benchmark, size), {})[library] = run["cpu_time"]
    if not argv[2:] == ["--all"]:
        largest = {}
        for benchmark, size in times:
            largest[benchmark] = max(size, largest.get(benchmark, 0))
        times = {key: value for key, value in times.items() if key[1] == largest[key[0]]}
    peers = sorted({library for value in times.values() for library in value if library != OURS})
    print("%-14s %9s %12s" % ("benchmark", "size", OURS + " ms") + "".join(" %12s" % ("/" + p) for p in peers))
    for (benchmark, size), libraries in sorted(times.items()):
        ours = libraries.get(OURS)
        cells = "".join(
            " %12s" % ("%.2f" % (ours / libraries[p]) if ours and p in libraries else "-") for p in peers)
        print("%-14s %9d %12s" % (benchmark, size, "%.2f" % ours if ours else "-") + cells)
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
