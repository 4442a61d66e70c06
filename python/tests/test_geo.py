"""GeoPandas layers and shapely geometries of every type, with GeoPandas' own to_crs (pyproj) as oracle."""
import geopandas as gpd
import numpy as np
import pytest
from shapely import wkt

import lmspatialreference as lm
from lmspatialreference.geo import OFFSET_ATTRIBUTE, to_crs

GEOMETRIES = [
    "POINT (116.39 39.91)",
    "POINT Z (116.39 39.91 43.5)",
    "LINESTRING (116.3 39.9, 116.4 39.95, 116.5 39.85)",
    "LINESTRING Z (116.3 39.9 10, 116.4 39.95 20)",
    "POLYGON ((116 39, 117 39, 117 40, 116 40, 116 39), (116.2 39.2, 116.4 39.2, 116.4 39.4, 116.2 39.2))",
    "MULTIPOINT (116.1 39.1, 116.2 39.2)",
    "MULTILINESTRING ((116 39, 116.5 39.5), (117 40, 117.5 40.5))",
    "MULTIPOLYGON (((116 39, 117 39, 117 40, 116 39)), ((118 41, 119 41, 119 42, 118 41)))",
    "GEOMETRYCOLLECTION (POINT (116 39), LINESTRING (116 39, 117 40))",
    "POLYGON EMPTY",
]


@pytest.fixture
def frame():
    return gpd.GeoDataFrame({"id": range(len(GEOMETRIES))}, geometry=[wkt.loads(g) for g in GEOMETRIES],
                            crs="EPSG:4326")


def same(a, b, tolerance):
    return all(x.equals_exact(y, tolerance) or (x.is_empty and y.is_empty) for x, y in zip(a, b))


@pytest.mark.parametrize("target", ["EPSG:32650", 4547])
def test_every_geometry_type_matches_geopandas(frame, target):
    before = frame.copy()
    moved = to_crs(frame, target)
    expected = frame.to_crs(target)
    assert moved.crs == expected.crs and list(moved["id"]) == list(frame["id"])
    assert same(moved.geometry, expected.geometry, 1e-6)
    assert [g.has_z for g in moved.geometry] == [g.has_z for g in frame.geometry]
    assert moved.geometry.iloc[1].z == 43.5
    assert frame.equals(before)  # the input is left alone
    assert same(to_crs(frame.geometry, target), expected.geometry, 1e-6)
    point = to_crs(frame.geometry.iloc[0], target, crs_from=4326)
    assert point.equals_exact(expected.geometry.iloc[0], 1e-6)


@pytest.mark.parametrize("offset", ["GCJ02", "BD09"])
def test_offset_round_trip(frame, offset):
    there = to_crs(frame, offset)
    assert there.crs == "EPSG:4326" and there.attrs[OFFSET_ATTRIBUTE] == offset
    assert not same(there.geometry, frame.geometry, 1e-4)
    back = to_crs(there, "WGS84", precision=0.0001)
    assert OFFSET_ATTRIBUTE not in back.attrs and back.crs == "EPSG:4326"
    assert same(back.geometry, frame.geometry, 1e-8)


@pytest.mark.parametrize("make,error", [
    (lambda f: to_crs(f.geometry.values, "EPSG:32650"), TypeError),
    (lambda f: to_crs(f.geometry.iloc[0], "EPSG:32650"), ValueError),
    (lambda f: to_crs(f.set_crs(None, allow_override=True), "EPSG:32650"), ValueError),
    (lambda f: to_crs(f, "GCJ03"), ValueError),
])
def test_refusals(frame, make, error):
    with pytest.raises(error):
        make(frame)


# Point layers take a path of their own; the mixed ones fall back to the general one.
POINT_LAYERS = {
    "2-D": ["POINT (116.39 39.91)", "POINT (113.2 23.1)"],
    "3-D": ["POINT Z (116.39 39.91 43.5)", "POINT Z (113.2 23.1 -7)"],
    "mixed": ["POINT (116.39 39.91)", "POINT Z (113.2 23.1 -7)"],
    "with empty": ["POINT (116.39 39.91)", "POINT EMPTY"],
}


@pytest.mark.parametrize("layer", POINT_LAYERS)
def test_point_layers_match_geopandas(layer):
    frame = gpd.GeoDataFrame({"id": [1, 2, 3]}, geometry=[wkt.loads(g) for g in POINT_LAYERS[layer]] + [None],
                             crs="EPSG:4326")
    moved, expected = to_crs(frame, 32650), frame.to_crs(32650)
    assert moved.geometry.iloc[2] is None and moved.crs == expected.crs
    assert same(moved.geometry[:2], expected.geometry[:2], 1e-6)
    assert [g.has_z for g in moved.geometry[:2]] == [g.has_z for g in frame.geometry[:2]]
