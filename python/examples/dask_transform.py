#!/usr/bin/env python3
"""Projects 10,000,000 WGS 84 points to Web Mercator on a local Dask cluster.

    python3 dask_transform.py [--points N] [--workers W] [--chunk C]

The cluster has W worker processes of one thread each (2 by default); each
worker rebuilds the transformation from its pickled definition. The script
checks that the distributed result equals the in-process transformation bit
for bit and prints the throughput.
"""

import argparse
import time

import numpy as np


def run(points=10_000_000, workers=2, chunk=1_000_000, seed=17):
    """Returns (distributed result, in-process result, seconds of the distributed transformation)."""
    import dask.array as da
    from dask.distributed import Client, LocalCluster, wait

    import lmspatialreference as lm
    import lmspatialreference.dask as lmdask

    wgs84 = lm.LmSpatialReference(lm.eWGS84)
    mercator = lm.LmSpatialReference(lm.eWebMercator)
    projection = lm.LmProjectCoordinateTransformation(wgs84, mercator)

    rng = np.random.default_rng(seed)
    lonlat = np.column_stack([rng.uniform(-180, 180, points), rng.uniform(-80, 80, points)])

    with LocalCluster(n_workers=workers, threads_per_worker=1, processes=True,
                      dashboard_address=None) as cluster, Client(cluster) as client:
        array = da.from_array(lonlat, chunks=(chunk, 2))
        array = client.persist(array)  # ship the points first, so the timing is the transformation
        client.wait_for_workers(workers)
        wait(array)
        # Timed: the transformation on the workers, results kept there; the
        # gathering of the result for the comparison is not timed.
        start = time.perf_counter()
        projected = client.persist(lmdask.transform(array, projection))
        wait(projected)
        seconds = time.perf_counter() - start
        result = projected.compute()

    expected = lonlat.copy()
    projection.transform(expected)
    return result, expected, seconds


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--points", type=int, default=10_000_000)
    parser.add_argument("--workers", type=int, default=2)
    parser.add_argument("--chunk", type=int, default=1_000_000)
    args = parser.parse_args()
    result, expected, seconds = run(args.points, args.workers, args.chunk)
    same = np.array_equal(result, expected)
    print(f"{args.points} points on {args.workers} workers: {seconds:.2f} s, "
          f"{args.points / seconds / 1e6:.2f} M points/s, identical to in-process: {same}")
    raise SystemExit(0 if same else 1)


if __name__ == "__main__":
    main()
