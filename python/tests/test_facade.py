"""CRS, Transformer and config against pyproj as the oracle."""
import copy
import pickle

import numpy as np
import pyproj
import pytest

import lmspatialreference as lm
from lmspatialreference import CRS, Transformer

RNG = np.random.default_rng(26)
UTM50 = "+proj=utm +zone=50 +datum=WGS84 +units=m +no_defs"


def prj_file(tmp_path):
    path = tmp_path / "gk.prj"
    path.write_text(pyproj.CRS(4547).to_wkt("WKT1_ESRI"))
    return str(path)


# (input, EPSG code pyproj gives it, projected)
CRS_INPUTS = [
    (lambda p: 4326, 4326, False),
    (lambda p: "EPSG:4547", 4547, True),
    (lambda p: " epsg:32650 ", 32650, True),
    (lambda p: pyproj.CRS(4547).to_wkt("WKT1_GDAL"), 4547, True),
    (lambda p: UTM50, 32650, True),
    (lambda p: prj_file(p), 4547, True),
    (lambda p: "WGS84", 4326, False),
    (lambda p: "CGCS2000", 4490, False),
    (lambda p: "WebMercator", 3857, True),
    (lambda p: pyproj.CRS(32650), 32650, True),
]


@pytest.mark.filterwarnings("ignore:You will likely lose")
@pytest.mark.parametrize("make,code,projected", CRS_INPUTS)
def test_crs_inputs_match_pyproj(tmp_path, make, code, projected):
    crs = CRS.from_user_input(make(tmp_path))
    assert crs.to_epsg() == code
    assert (crs.is_projected, crs.is_geographic) == (projected, not projected)
    assert pyproj.CRS(crs.to_wkt()).to_proj4() == pyproj.CRS(code).to_proj4()
    assert pickle.loads(pickle.dumps(crs)) == crs


def test_crs_texts():
    gk = CRS("EPSG:4547")
    assert gk.to_epsg() == 4547 and CRS(4326).to_epsg() == 4326
    assert CRS("+proj=tmerc +lon_0=117.3 +k=1 +x_0=500000 +ellps=GRS80 +units=m").to_epsg() is None
    assert "+lon_0=114 " in gk.to_proj4() and "\n" in gk.to_wkt(pretty=True) and "\n" not in gk.to_wkt()
    assert gk.ellipsoid and "4547" in repr(gk) and gk.name in repr(gk)
    assert CRS.from_wkt(gk.to_wkt()) == gk and CRS.from_proj4(UTM50) == 32650
    assert CRS("EPSG:32650") == 32650 and CRS(4326) != gk and (CRS(4326) == "not a crs") is False


@pytest.mark.parametrize("value,error", [
    (None, TypeError), (3.5, TypeError), (True, TypeError), ([4326], TypeError),
    ("GCJ02", ValueError), ("not a crs", ValueError), (-1, ValueError), ("EPSG:abc", ValueError),
    ("+proj=nonsense", ValueError),
])
def test_crs_refuses(value, error):
    with pytest.raises(error):
        CRS(value)


def lonlat(n, lon=(114.0, 120.0), lat=(20.0, 45.0)):
    return RNG.uniform(*lon, n), RNG.uniform(*lat, n)


# Sizes on both sides of the parallel threshold.
@pytest.mark.parametrize("target", [32650, 4547])
@pytest.mark.parametrize("n", [7, lm.transformer.PARALLEL_FROM + 3])
def test_projection_bit_identical_to_pyproj(target, n):
    x, y = lonlat(n)
    x[1], y[1] = 116.0, 95.0  # beyond the pole: inf from both
    expected = pyproj.Transformer.from_crs(4326, target, always_xy=True).transform(x, y)
    actual = Transformer.from_crs("EPSG:4326", target).transform(x, y)
    np.testing.assert_array_equal(actual, expected)
    assert np.isinf(actual[0][1]) and np.isinf(actual[1][1])


def test_input_kinds_and_shapes():
    t = Transformer.from_crs(4326, 32650)
    oracle = pyproj.Transformer.from_crs(4326, 32650, always_xy=True)
    x, y = lonlat(12)
    grid_x, grid_y = x.reshape(3, 4), y.reshape(3, 4).astype(np.float32)
    before = grid_x.copy(), grid_y.copy()
    gx, gy = t.transform(grid_x, grid_y)
    assert gx.shape == (3, 4) and gx.dtype == np.float64
    np.testing.assert_array_equal(gx, oracle.transform(grid_x, grid_y.astype(np.float64))[0])
    assert np.array_equal(grid_x, before[0]) and np.array_equal(grid_y, before[1])
    assert t.transform(117, 31.5) == oracle.transform(117.0, 31.5)
    np.testing.assert_array_equal(t.transform([117, 118], [31, 32], [5, 6]),
                                  oracle.transform([117.0, 118.0], [31.0, 32.0], [5.0, 6.0]))
    points = np.column_stack([x, y])
    assert t.transform_inplace(points)
    np.testing.assert_array_equal(points.T, t.transform(x, y))


BAD_CALLS = [
    (([1.0, 2.0], [1.0]), ValueError),
    ((np.ones(3), np.ones(3), np.ones(2)), ValueError),
    (([1.0, np.nan], [1.0, 2.0]), ValueError),
    ((np.array(["a"]), np.array(["b"])), TypeError),
    ((np.ones(2, dtype=complex), np.ones(2)), TypeError),
    ((np.array([True]), np.array([1.0])), TypeError),
    (([[1.0], [1.0, 2.0]], [1.0, 2.0]), ValueError),
]


@pytest.mark.parametrize("arguments,error", BAD_CALLS)
def test_transform_refuses_and_leaves_inputs(arguments, error):
    before = copy.deepcopy(arguments)
    with pytest.raises(error):
        Transformer.from_crs(4326, 32650).transform(*arguments)
    assert repr(arguments) == repr(before)


@pytest.mark.parametrize("crs_from,crs_to,error", [
    ("GCJ02", "EPSG:4547", ValueError), ("GCJ02", "BD09", ValueError), ("WGS84", "NoSuchName", ValueError),
    (None, 4326, TypeError),
])
def test_from_crs_refuses(crs_from, crs_to, error):
    with pytest.raises(error):
        Transformer.from_crs(crs_from, crs_to)


@pytest.mark.parametrize("name,forward,back", [
    ("GCJ02", lm.LmWGS84ToGCJ02CoordinateTransformation, lm.LmGCJ02ToWGS84CoordinateTransformation),
    ("BD09", lm.LmWGS84ToBD09CoordinateTransformation, lm.LmBD09ToWGS84CoordinateTransformation),
])
def test_offsets_both_ways(name, forward, back):
    x, y = lonlat(50)
    to = Transformer.from_crs(4326, name)
    ox, oy = to.transform(x, y)
    expected = np.column_stack([x, y])
    forward().transform(expected)
    np.testing.assert_array_equal(np.column_stack([ox, oy]), expected)
    assert (to.source_offset, to.target_offset) == (None, name)
    for back_transformer in (Transformer.from_crs(name, "WGS84", precision=0.0001), to.inverse()):
        bx, by = back_transformer.transform(ox, oy)
        np.testing.assert_allclose(bx, x, atol=1e-8)
        np.testing.assert_allclose(by, y, atol=1e-8)
    assert isinstance(Transformer.from_crs(name, "WGS84").transformation, back)


@pytest.mark.parametrize("name", ["GCJ02", "BD09"])
def test_unsolved_reverse_offset_is_inf(name):
    # A move of 1e-300 m spans no double, so no tolerance can be met.
    back = Transformer.from_crs(name, "WGS84", precision=1e-300)
    x, y = back.transform([116.4, 10.0], [39.9, 50.0])
    assert np.isinf([x[0], y[0]]).all()
    # Outside China GCJ-02 is WGS 84, which is a result; BD-09 is solved everywhere.
    assert (x[1], y[1]) == (10.0, 50.0) if name == "GCJ02" else np.isinf([x[1], y[1]]).all()
    points = np.array([[116.4, 39.9]])
    assert back.transformation.transform(points) and points.tolist() == [[116.4, 39.9]]


def test_inverse_repr_and_pickle():
    t = Transformer.from_crs(4326, 4547)
    x, y = lonlat(20)
    back = t.inverse().transform(*t.transform(x, y))
    np.testing.assert_allclose(back, (x, y), atol=1e-9)
    assert repr(t) == "<Transformer EPSG:4326 -> EPSG:4547>"
    copy = pickle.loads(pickle.dumps(t))
    np.testing.assert_array_equal(copy.transform(x, y), t.transform(x, y))
    assert copy.transformation.block_calls and copy.transformation.parallel


def test_config_round_trip(tmp_path):
    key = "Test/Facade/Value"
    lm.config.set(key, True)
    assert lm.config.get(key) == "true"
    lm.config.clear(key)
    assert lm.config.get(key, "gone") == "gone"
    good, bad = tmp_path / "good.xml", tmp_path / "bad.xml"
    good.write_text("<C><Test><Facade><Value>7</Value></Facade></Test></C>")
    bad.write_text("<C><unclosed>")
    lm.config.load(good)
    assert lm.config.get(key) == "7"
    lm.config.clear(key)
    with pytest.raises(ValueError):
        lm.config.load(bad)
    with pytest.raises(FileNotFoundError):
        lm.config.load(tmp_path / "missing.xml")
    with pytest.raises(TypeError):
        lm.config.set(key, [1])


ESRI_NAD83_UTM18N = (
    'PROJCS["NAD_1983_UTM_Zone_18N",GEOGCS["GCS_North_American_1983",DATUM["D_North_American_1983",'
    'SPHEROID["GRS_1980",6378137.0,298.257222101]],PRIMEM["Greenwich",0.0],UNIT["Degree",0.0174532925199433]],'
    'PROJECTION["Transverse_Mercator"],PARAMETER["False_Easting",500000.0],PARAMETER["False_Northing",0.0],'
    'PARAMETER["Central_Meridian",-75.0],PARAMETER["Scale_Factor",0.9996],PARAMETER["Latitude_Of_Origin",0.0],'
    'UNIT["Meter",1.0]]')


def test_find_epsg_names_what_the_text_means():
    crs = lm.CRS(ESRI_NAD83_UTM18N)
    # pyproj, through PROJ's own identification, agrees.
    assert crs.find_epsg() == pyproj.CRS(ESRI_NAD83_UTM18N).to_epsg() == 26918
    code, confidence, name = crs.epsg_candidates()[0]
    assert (code, confidence, name) == (26918, 100, "NAD83 / UTM zone 18N")
