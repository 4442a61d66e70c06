#!/usr/bin/env python3
"""The facade against pyproj in the same run, on the same points.

    PYTHONPATH=build/python python3 python/bench/bench_pyproj.py [--points N] [--repeats R]

For WGS 84 -> UTM 50N and WGS 84 -> CGCS2000 3-degree Gauss-Kruger CM 114E
(EPSG:4547) on N points (1,000,000 by default), times in turns pyproj's
``Transformer.from_crs(..., always_xy=True).transform``, the facade's
``Transformer.transform`` and the plain ``LmProjectCoordinateTransformation``
with the library's defaults, and checks that the facade's result equals
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
    start = time.perf_counter()
    result = call()
    return time.perf_counter() - start, result


def projections(points, repeats):
    rng = np.random.default_rng(1)
    x, y = rng.uniform(112.5, 115.5, points), rng.uniform(22, 42, points)
    for name, target in (("WGS 84 -> UTM 50N", 32650), ("WGS 84 -> CGCS2000 GK CM 114E", 4547)):
        oracle = pyproj.Transformer.from_crs(4326, target, always_xy=True)
        facade = lm.Transformer.from_crs(4326, target)
        plain = lm.LmProjectCoordinateTransformation(lm.CRS(4326).reference, lm.CRS(target).reference)
        interleaved = np.column_stack([x, y])
        seconds = {"pyproj": [], "facade": [], "plain": []}
        for _ in range(repeats):
            t, expected = timed(lambda: oracle.transform(x, y))
            seconds["pyproj"].append(t)
            t, actual = timed(lambda: facade.transform(x, y))
            seconds["facade"].append(t)
            copy = interleaved.copy()
            seconds["plain"].append(timed(lambda: plain.transform(copy))[0])
        identical = np.array_equal(actual[0], expected[0]) and np.array_equal(actual[1], expected[1])
        p, f, d = (statistics.median(seconds[k]) for k in ("pyproj", "facade", "plain"))
        print(f"  {name:30s} pyproj {p:6.3f} s   facade {f:6.3f} s ({p / f:4.2f}x pyproj's speed)   "
              f"plain default {d:6.3f} s ({d / p:4.2f}x pyproj's time)   bit-identical: {identical}")


def gcj02_layer(points, repeats):
    import geopandas as gpd

    rng = np.random.default_rng(2)
    layer = gpd.GeoDataFrame({"id": np.arange(points)},
                             geometry=gpd.points_from_xy(rng.uniform(73, 135, points), rng.uniform(18, 53, points)),
                             crs="EPSG:4326")
    seconds = [timed(lambda: lm.geo.to_crs(layer, "GCJ02"))[0] for _ in range(repeats)]
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
