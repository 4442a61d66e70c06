#!/usr/bin/env python3
"""Estimates Bursa-Wolf parameters from a CSV of control points and applies them to a layer.

    python3 bursa_from_csv.py [control_points.csv]

The CSV holds each control point in WGS 84 (lon, lat, h: degrees and metres)
and as surveyed in CGCS2000 / 3-degree Gauss-Kruger CM 114E (EPSG:4547:
x = easting, y = northing, z = height, metres). The seven parameters come
with their mean error and per-point residuals; the estimate's Transformer
then carries a GeoDataFrame of GPS points into the surveyed system.
"""

import os
import sys

import geopandas as gpd
import pandas as pd
from shapely.geometry import Point

from lmspatialreference import estimate, geo

CONTROL_POINTS = os.path.join(os.path.dirname(os.path.abspath(__file__)), "data", "control_points.csv")


def run(path=CONTROL_POINTS):
    """Returns (the estimate, the layer, the layer in EPSG:4547)."""
    points = pd.read_csv(path)
    fit = estimate.bursa7(points[["lon", "lat", "h"]], points[["x", "y", "z"]], "WGS84", "EPSG:4547")
    layer = gpd.GeoDataFrame({"station": ["GPS-1", "GPS-2"]},
                             geometry=[Point(114.305, 30.592, 23.0), Point(114.262, 30.618, 31.5)],
                             crs="EPSG:4326")
    return fit, layer, geo.to_crs(layer, fit.transformer)


def main():
    fit, layer, surveyed = run(*sys.argv[1:])
    for name, value in fit.parameters.items():
        print(f"  {name:10s} {value:12.6f}")
    print(f"mean error {fit.mean_error:.4f} m; largest residual {abs(fit.residuals).max():.4f} m")
    print(surveyed.to_string())


if __name__ == "__main__":
    main()
