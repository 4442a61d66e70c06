#!/usr/bin/env python3
"""The Dask helper with a Transformer: WGS 84 to CGCS2000 Gauss-Kruger on a chunked array.

    python3 dask_transformer.py [--points N] [--chunk C]

Each chunk goes through ``Transformer.transform`` (block calls, parallel for
large chunks) on Dask's threads; the result equals the in-process call bit
for bit, and points that cannot be transformed come back as inf.
"""

import argparse

import numpy as np


def run(points=2_000_000, chunk=250_000, seed=3):
    """Returns (the Dask result, the in-process result)."""
    import dask.array as da

    import lmspatialreference as lm
    import lmspatialreference.dask as lmdask

    to_gauss_kruger = lm.Transformer.from_crs("WGS84", "EPSG:4547")
    rng = np.random.default_rng(seed)
    lonlat = np.column_stack([rng.uniform(112.5, 115.5, points), rng.uniform(22, 42, points)])
    result = lmdask.transform(da.from_array(lonlat, chunks=(chunk, 2)), to_gauss_kruger).compute(scheduler="threads")
    expected = np.column_stack(to_gauss_kruger.transform(lonlat[:, 0], lonlat[:, 1]))
    return result, expected


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--points", type=int, default=2_000_000)
    parser.add_argument("--chunk", type=int, default=250_000)
    args = parser.parse_args()
    result, expected = run(args.points, args.chunk)
    same = np.array_equal(result, expected)
    print(f"{args.points} points in chunks of {args.chunk}: identical to in-process: {same}")
    raise SystemExit(0 if same else 1)


if __name__ == "__main__":
    main()
