#!/usr/bin/env python3
"""Runs every benchmark of the library and prints the performance table of
docs/performance.md: each library path against its baseline (GDAL's own batch call, a plain
loop over the same formula), serial and parallel, as ratios measured in one run.

Usage: bench/performance_table.py [--bin build/bin] [--repetitions 5]

Every figure is a ratio of medians over the repetitions. Two columns: real
(wall-clock) time, and CPU time summed over all threads of the process. On a
machine whose cores are busy with other work the wall-clock ratios of the
parallel runs mostly measure that load; the CPU ratios still say what a
batch costs, and so how it would scale on free cores. The load average at the
start is printed so that a reader can judge. The repetitions of all
benchmarks of a program run in random order, so that a library path and its
baseline meet the same load over the run.
"""
import argparse
import json
import os
import subprocess
import sys


def run(program, repetitions):
    """Median real and CPU time (ms) per benchmark name (with its label)."""
    out = subprocess.run(
        [program, "--benchmark_format=json", f"--benchmark_repetitions={repetitions}",
         "--benchmark_report_aggregates_only=true", "--benchmark_enable_random_interleaving=true"],
        check=True, capture_output=True, text=True).stdout
    times = {}
    for b in json.loads(out)["benchmarks"]:
        if b.get("aggregate_name") != "median":
            continue
        name = b["run_name"].replace("/process_time", "").replace("/real_time", "")
        times[name] = (b["real_time"], b["cpu_time"])
    return times


def ratio(a, b):
    return tuple(x / y for x, y in zip(a, b))


def speedup(serial, parallel):
    """Real time: serial over parallel. CPU: serial over parallel CPU time of
    all threads, 1.00 when the threads add no work to the serial run."""
    return ratio(serial, parallel)


def efficiency(serial, parallel, threads=2):
    """Real time: serial over threads times parallel (1.00 is ideal). CPU: as
    in speedup."""
    return (serial[0] / (threads * parallel[0]), serial[1] / parallel[1])


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--bin", default=os.path.join("build", "bin"))
    parser.add_argument("--repetitions", type=int, default=5)
    args = parser.parse_args()

    def bench(name):
        return run(os.path.join(args.bin, name), args.repetitions)

    start_load = os.getloadavg()[0]
    rows = []

    def row(what, values, how):
        rows.append((what, values, how))

    p = bench("bench_projection")
    gdal = p["BM_GdalBatch"]
    row("Projection, per point, serial / GDAL batch", ratio(p["BM_LibrarySerial"], gdal), "time ratio")
    row("Projection, blocks, serial / GDAL batch", ratio(p["BM_LibraryBlocksSerial"], gdal), "time ratio")
    row("Projection, per point, serial / parallel", speedup(p["BM_LibrarySerial"], p["BM_LibraryParallel"]),
        "speed-up")
    row("Projection, blocks, serial / parallel",
        speedup(p["BM_LibraryBlocksSerial"], p["BM_LibraryBlocksParallel"]), "speed-up")
    row("GDAL batch, 1 thread / 2 threads (the machine's ceiling)", speedup(gdal, p["BM_GdalBatchTwoThreads"]),
        "speed-up")

    o = bench("bench_offsets")
    names = {0: "WGS84->GCJ02", 1: "WGS84->BD09", 2: "GCJ02->WGS84", 3: "BD09->WGS84",
             4: "Converse of WGS84->GCJ02"}
    for which, label in names.items():
        plain1, plain2 = o[f"BM_PlainLoop/{which}/1"], o[f"BM_PlainLoop/{which}/2"]
        lib1, lib2 = o[f"BM_Batch/{which}/1"], o[f"BM_Batch/{which}/2"]
        row(f"{label}, library / plain loop, 1 thread", ratio(lib1, plain1), "time ratio")
        row(f"{label}, library on 2 threads against the plain loop on 1", efficiency(plain1, lib2),
            "efficiency")
        row(f"{label}, plain loop on 2 threads against itself on 1", efficiency(plain1, plain2), "efficiency")

    g = bench("bench_geodesic")
    row("ComputeGeodesic, 1 thread / plain geod_inverse loop",
        ratio(g["BM_ComputeGeodesic/1"], g["BM_PlainGeodInverseLoop"]), "time ratio")
    row("ComputeGeodesic, 1 thread / default team", speedup(g["BM_ComputeGeodesic/1"], g["BM_ComputeGeodesic/0"]),
        "speed-up")

    print(f"{os.cpu_count()} cores, load average {start_load:.1f} at the start and {os.getloadavg()[0]:.1f} "
          f"at the end, medians of {args.repetitions} runs.")
    print("Time ratios: library over baseline (below 1 is faster). Speed-ups and efficiencies, real time: "
          "serial over parallel, and over twice parallel. CPU column of parallel rows: serial CPU time over the "
          "parallel run's CPU time of all threads (1.00: the threads add no work).")
    print()
    print("| measure | kind | real time | CPU time, all threads |")
    print("|---|---|---|---|")
    for what, (real, cpu), how in rows:
        print(f"| {what} | {how} | {real:.2f} | {cpu:.2f} |")
    return 0


if __name__ == "__main__":
    sys.exit(main())
