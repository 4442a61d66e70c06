#!/usr/bin/env python3
"""Points per second through the Python module beside the same C++ call.

    PYTHONPATH=build/python python3 python/bench/bench_python.py [--points N] [--repeats R] [--dask]

For a projection (WGS 84 to UTM 50N) and for WGS 84 to GCJ-02, on N points
(1,000,000 by default), the Python call ``transform`` and the C++ call it
makes are timed in turns on fresh copies of the same points; the medians give
the binding's overhead. ``--dask`` adds the Dask example's throughput with 1
and 2 worker processes on 10,000,000 points.
"""

import argparse
import os
import statistics
import sys
import time

import numpy as np

import lmspatialreference as lm
import _lmbench

UTM50 = "+proj=utm +zone=50 +datum=WGS84 +units=m +no_defs"


def cases():
    wgs84 = lm.LmSpatialReference(lm.eWGS84)
    yield "projection WGS 84 -> UTM 50N", lm.LmProjectCoordinateTransformation(
        wgs84, lm.LmSpatialReference(UTM50, lm.eProj4))
    yield "WGS 84 -> GCJ-02", lm.LmWGS84ToGCJ02CoordinateTransformation()


def python_seconds(transformation, points):
    start = time.perf_counter()
    transformation.transform(points)
    return time.perf_counter() - start


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--points", type=int, default=1_000_000)
    parser.add_argument("--repeats", type=int, default=7)
    parser.add_argument("--dask", action="store_true")
    args = parser.parse_args()

    rng = np.random.default_rng(1)
    source = np.column_stack([rng.uniform(114, 120, args.points), rng.uniform(30, 45, args.points)])
    print(f"{args.points} points, median of {args.repeats} turns")
    for name, transformation in cases():
        native, python = [], []
        for _ in range(args.repeats):
            native.append(_lmbench.native_seconds(transformation, source.copy()))
            python.append(python_seconds(transformation, source.copy()))
        n, p = statistics.median(native), statistics.median(python)
        print(f"  {name:30s} C++ {args.points / n / 1e6:6.2f} M points/s   "
              f"Python {args.points / p / 1e6:6.2f} M points/s   overhead {100 * (p / n - 1):+5.1f} %")

    if args.dask:
        sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "examples"))
        import dask_transform
        for workers in (1, 2):
            result, expected, seconds = dask_transform.run(10_000_000, workers)
            print(f"  Dask example, {workers} worker(s): {10_000_000 / seconds / 1e6:.2f} M points/s, "
                  f"identical to in-process: {np.array_equal(result, expected)}")


if __name__ == "__main__":
    main()
