#!/usr/bin/env python3
"""The facade against pyproj in the same run, on the same points.

    PYTHONPATH=build/python python3 python/bench/bench_pyproj.py [--points N] [--repeats R]

For WGS 84 -> UTM 50N and WGS 84 -> CGCS2000 3-degree Gauss-Kruger CM 114E
(EPSG:4547) on N points (1,000,000 by default), times in turns pyproj's
``Transformer.from_crs(..., always_xy=True).transform``, the facade's
``Transformer.transform``, the plain ``LmProjectCoordinateTransformation``
with the library's defaults and with block calls on one thread (GDAL's cost
per point beside pyproj's, and so the facade's gain from the second thread),
with wall and CPU times, and checks that the facade's result equals
pyproj's bit for bit. Then times ``geo.to_crs`` of a 100,000-point
GeoDataFrame to GCJ-02. Medians of R turns; the machine's load average is
printed with the figures.
"""

import argparse
import os
import statistics
import time

import numpy as np
import pyproj

import lmspatialreference as lm


def timed(call):
    """Wall and CPU seconds of call() and its result. CPU time beyond the wall
    time is the second thread at work; wall time beyond the CPU time is the
    machine taking the cores for other work."""
    start, cpu = time.perf_counter(), time.process_time()
    result = call()
    return (time.perf_counter() - start, time.process_time() - cpu), result


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
        seconds = {"pyproj": [], "facade": [], "plain": [], "blocks": []}
        for _ in range(repeats):
            t, expected = timed(lambda: oracle.transform(x, y))
            seconds["pyproj"].append(t)
            t, actual = timed(lambda: facade.transform(x, y))
            seconds["facade"].append(t)
            for kind, transformation in (("plain", plain), ("blocks", blocks)):
                copy = interleaved.copy()
                seconds[kind].append(timed(lambda: transformation.transform(copy))[0])
        identical = np.array_equal(actual[0], expected[0]) and np.array_equal(actual[1], expected[1])
        (p, pc), (f, fc), (d, _), (b, bc) = ((statistics.median(w for w, _ in seconds[k]),
                                              statistics.median(c for _, c in seconds[k]))
                                             for k in ("pyproj", "facade", "plain", "blocks"))
        print(f"  {name}: bit-identical to pyproj: {identical}\n"
              f"    pyproj {p:6.3f} s (CPU {pc:.3f})   facade {f:6.3f} s (CPU {fc:.3f}): {p / f:4.2f}x pyproj's speed\n"
              f"    one thread in blocks {b:6.3f} s (CPU {bc:.3f}): {b / p:4.2f}x pyproj's time; "
              f"two threads {b / f:4.2f}x faster   plain default {d:6.3f} s ({d / p:4.2f}x pyproj's time)")


def gcj02_layer(points, repeats):
    import geopandas as gpd

    rng = np.random.default_rng(2)
    layer = gpd.GeoDataFrame({"id": np.arange(points)},
                             geometry=gpd.points_from_xy(rng.uniform(73, 135, points), rng.uniform(18, 53, points)),
                             crs="EPSG:4326")
    seconds = [timed(lambda: lm.geo.to_crs(layer, "GCJ02"))[0][0] for _ in range(repeats)]
    print(f"  GCJ-02 of a {points}-point GeoDataFrame: {statistics.median(seconds):.3f} s")


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
