#!/usr/bin/env python3
"""The facade against pyproj in the same run, on the same points.

    PYTHONPATH=build/python python3 python/bench/bench_pyproj.py [--points N] [--repeats R]

For WGS 84 -> UTM 50N and WGS 84 -> CGCS2000 3-degree Gauss-Kruger CM 114E
(EPSG:4547) on N points (1,000,000 by default), times in turns pyproj's
``Transformer.from_crs(..., always_xy=True).transform``, the facade's
``Transformer.transform``, the plain ``LmProjectCoordinateTransformation``
with the library's defaults and with block calls on one thread (GDAL's cost
per point beside pyproj's, and so the facade's gain from the second thread),
and checks that the facade's result equals pyproj's bit for bit. Then times
``geo.to_crs`` of a 100,000-point GeoDataFrame to GCJ-02. Medians of R
turns, in wall time and in the time the busiest thread of the process ran:
on a machine shared with other sessions the kernel (with autogroup
scheduling) gives this process a share of the cores however niced the
others are, so the wall time shows the share and the busiest thread's time
shows what the code would take with a core for each thread. The machine's
load average is printed with the figures.
"""

import argparse
import os
import statistics
import time

import numpy as np
import pyproj

import lmspatialreference as lm


def thread_seconds():
    """Seconds each thread of this process has spent on a core, by thread id,
    from the scheduler's own account (nanoseconds, unlike the tick counts)."""
    seconds = {}
    for thread in os.listdir("/proc/self/task"):
        try:
            with open(f"/proc/self/task/{thread}/schedstat") as stat:
                seconds[thread] = int(stat.read().split()[0]) / 1e9
        except OSError:  # the thread ended meanwhile
            pass
    return seconds


def timed(call):
    """The wall seconds of call(), the seconds its busiest thread ran, and its
    result. With a core for each thread the wall time is the busiest thread's
    time; on a shared machine the wall time is longer by what others took."""
    before, start = thread_seconds(), time.perf_counter()
    result = call()
    wall, after = time.perf_counter() - start, thread_seconds()
    return (wall, max(after[t] - before.get(t, 0.0) for t in after)), result


def median(turns, which):
    return statistics.median(turn[which] for turn in turns)


def projections(points, repeats):
    rng = np.random.default_rng(1)
    x, y = rng.uniform(112.5, 115.5, points), rng.uniform(22, 42, points)
    for name, target in (("WGS 84 -> UTM 50N", 32650), ("WGS 84 -> CGCS2000 GK CM 114E", 4547)):
        oracle = pyproj.Transformer.from_crs(4326, target, always_xy=True)
        facade = lm.Transformer.from_crs(4326, target)
        source, destination = lm.CRS(4326).reference, lm.CRS(target).reference
        plain = lm.LmProjectCoordinateTransformation(source, destination)
        # The facade's own way, on one thread: GDAL's cost per point beside PROJ's through pyproj.
        blocks = lm.LmProjectCoordinateTransformation(source, destination)
        blocks.block_calls, blocks.parallel = True, False
        interleaved = np.column_stack([x, y])
        turns = {"pyproj": [], "facade": [], "plain": [], "blocks": []}
        for _ in range(repeats):
            t, expected = timed(lambda: oracle.transform(x, y))
            turns["pyproj"].append(t)
            t, actual = timed(lambda: facade.transform(x, y))
            turns["facade"].append(t)
            for kind, transformation in (("plain", plain), ("blocks", blocks)):
                copy = interleaved.copy()
                turns[kind].append(timed(lambda: transformation.transform(copy))[0])
        identical = np.array_equal(actual[0], expected[0]) and np.array_equal(actual[1], expected[1])
        (p, f, d, b), (pb, fb, bb) = ([median(turns[k], 0) for k in ("pyproj", "facade", "plain", "blocks")],
                                      [median(turns[k], 1) for k in ("pyproj", "facade", "blocks")])
        print(f"  {name}: bit-identical to pyproj: {identical}\n"
              f"    wall: pyproj {p:.3f} s, facade {f:.3f} s ({p / f:.2f}x pyproj's speed), one thread in "
              f"blocks {b:.3f} s, plain default {d:.3f} s ({d / p:.2f}x pyproj's time)\n"
              f"    busiest thread: pyproj {pb:.3f} s, facade {fb:.3f} s ({pb / fb:.2f}x pyproj's speed with "
              f"a core per thread), one thread in blocks {bb:.3f} s ({bb / pb:.2f}x pyproj's time per "
              f"point; {bb / fb:.2f}x from the second thread)")


def gcj02_layer(points, repeats):
    import geopandas as gpd

    rng = np.random.default_rng(2)
    layer = gpd.GeoDataFrame({"id": np.arange(points)},
                             geometry=gpd.points_from_xy(rng.uniform(73, 135, points), rng.uniform(18, 53, points)),
                             crs="EPSG:4326")
    turns = [timed(lambda: lm.geo.to_crs(layer, "GCJ02"))[0] for _ in range(repeats)]
    print(f"  GCJ-02 of a {points}-point GeoDataFrame: {median(turns, 0):.3f} s "
          f"(busiest thread {median(turns, 1):.3f} s)")


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--points", type=int, default=1_000_000)
    parser.add_argument("--repeats", type=int, default=5)
    args = parser.parse_args()
    print(f"{args.points} points, median of {args.repeats} turns, {os.cpu_count()} cores, "
          f"load average {os.getloadavg()[0]:.2f} before")
    projections(args.points, args.repeats)
    gcj02_layer(100_000, args.repeats)
    print(f"load average {os.getloadavg()[0]:.2f} after")


if __name__ == "__main__":
    main()
