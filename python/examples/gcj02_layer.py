#!/usr/bin/env python3
"""Moves a layer of WGS 84 points and lines into GCJ-02 for a Chinese web map, and back.

    python3 gcj02_layer.py

Web maps in China (AutoNavi, Tencent) draw GCJ-02 coordinates; a GPS layer in
WGS 84 lands a few hundred metres off unless it is offset first. The layer
in GCJ-02 keeps the CRS EPSG:4326 and carries the attribute
``lmspatialreference_offset`` = "GCJ02", from which the way back is found.
"""

import geopandas as gpd
import numpy as np
from shapely.geometry import LineString, Point

from lmspatialreference import geo


def run(precision=0.001):
    """Returns (the layer, it in GCJ-02, it back in WGS 84, the largest round-trip error in degrees)."""
    layer = gpd.GeoDataFrame(
        {"name": ["Tiananmen", "Oriental Pearl Tower", "Chang'an Avenue"]},
        geometry=[Point(116.3912, 39.9073), Point(121.4997, 31.2397),
                  LineString([(116.3000, 39.9075), (116.3912, 39.9073), (116.4800, 39.9080)])],
        crs="EPSG:4326")
    on_web_map = geo.to_crs(layer, "GCJ02")
    back = geo.to_crs(on_web_map, "WGS84", precision=precision)
    error = max(np.abs(np.subtract(a.coords, b.coords)).max() for a, b in zip(layer.geometry, back.geometry))
    return layer, on_web_map, back, error


def main():
    layer, on_web_map, back, error = run()
    for name, before, after in zip(layer["name"], layer.geometry, on_web_map.geometry):
        shift = np.abs(np.subtract(after.coords, before.coords)).max()
        print(f"{name:22s} moved by up to {shift * 111_000:5.0f} m")
    print(f"offset marker: {on_web_map.attrs}, CRS {on_web_map.crs}")
    print(f"back in WGS 84 within {error:.1e} degrees")


if __name__ == "__main__":
    main()
