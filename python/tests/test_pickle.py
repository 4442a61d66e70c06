"""Spatial references and transformations pickle by their definition."""
import pickle
import subprocess
import sys

import numpy as np
import pytest

import lmspatialreference as lm

UTM50 = "+proj=utm +zone=50 +datum=WGS84 +units=m +no_defs"
F = lm.LmCoordinateTransformationFactory
SEVEN = [-90, 40, 88, 1, -2, 3, 4.5]
POINTS = np.array([[116.391, 39.907, 50.0], [117.2, 31.8, -3.0], [-3.7, 40.4, 0.0]])


def ref(kind):
    return {"wgs84": lambda: lm.LmSpatialReference(lm.eWGS84),
            "cgcs2000": lambda: lm.LmSpatialReference(lm.eCGCS2000),
            "mercator": lambda: lm.LmSpatialReference(lm.eWebMercator),
            "utm50": lambda: lm.LmSpatialReference(UTM50, lm.eProj4)}[kind]()


def renamed():
    r = ref("utm50")
    r.name = "site grid"
    return r


REFERENCES = {
    "built-in": lambda: ref("cgcs2000"),
    "proj4": lambda: ref("utm50"),
    "xml": lambda: lm.LmSpatialReference(ref("mercator").export_to_xml(), lm.eXML),
    "renamed": renamed,
    "null": lambda: lm.LmSpatialReference("", lm.eWKT),
    "EPSG code": lambda: lm.LmSpatialReference(32650),
}


def parameter_then(method, values, then=None):
    t = lm.LmParameterProjectCoordinateTransformation(ref("wgs84"), ref("utm50"), method, values)
    if then:
        then(t)
    return t


def chain():
    c = lm.LmCoordinateTransformationCombination([lm.LmWGS84ToGCJ02CoordinateTransformation()])
    c.add(lm.LmProjectCoordinateTransformation(ref("wgs84"), ref("mercator")))
    c.add(lm.LmAffineCoordinateTransformation.rotation(1e5, 2e5, 30.0))
    return c


TRANSFORMATIONS = {
    "projection": lambda: lm.LmProjectCoordinateTransformation(ref("wgs84"), ref("utm50")),
    "projection, target set": lambda: _set_target(lm.LmProjectCoordinateTransformation(ref("wgs84"), ref("wgs84"))),
    "seven parameters": lambda: parameter_then(lm.eCoordinateFrame7Parameter, [-90, 40, 88, 1, -2, 3, 4.5]),
    "three parameters, then changed": lambda: parameter_then(
        lm.eGeocentricTranslation3Parameter, [1, 2, 3],
        lambda t: t.set_parameter(lm.ePositionVector7Parameter, [10, 20, 30, 0.1, 0.2, 0.3, 1])),
    "parameters dropped by a new source": lambda: parameter_then(
        lm.eGeocentricTranslation3Parameter, [100, 200, 300], lambda t: setattr(t, "source", ref("cgcs2000"))),
    "to GCJ-02": lm.LmWGS84ToGCJ02CoordinateTransformation,
    "to BD-09": lm.LmWGS84ToBD09CoordinateTransformation,
    "from GCJ-02": lambda: _set_precision(lm.LmGCJ02ToWGS84CoordinateTransformation(0.01), 1e-4),
    "from BD-09": lambda: lm.LmBD09ToWGS84CoordinateTransformation(0.002),
    "affine estimated": lambda: lm.LmAffineCoordinateTransformation.from_points(
        POINTS[:, :2], POINTS[:, :2] * 1.5 + [3.0, -4.0]),
    "converse": lambda: lm.LmConverseCoordinateTransformation(
        lm.LmAffineCoordinateTransformation([1.1, 0.1, -0.2, 0.9, 5, 6]), 1e-14),
    "chain": chain,
    "factory: projection": lambda: F.create_project_coordinate_transformation(ref("wgs84"), ref("utm50")),
    "factory: Bursa chain": lambda: F.create_bursa7_coordinate_transformation(ref("wgs84"), ref("utm50"), SEVEN),
    "factory: Molodensky about a centre": lambda: F.create_molodensky_coordinate_transformation(
        ref("wgs84"), ref("cgcs2000"), SEVEN, [-2.2e6, 4.4e6, 4.0e6]),
    "factory: cube": lambda: F.create_cube4_patameter_coordinate_transformation(
        ref("wgs84"), ref("wgs84"), 0.6, 2.0, [10.0, -5.0, 3.0, 1.5]),
    "factory: plane fitting": lambda: F.create_plane_fitting_coordinate_transformation(
        POINTS, POINTS * 1.01 + [0.5, -0.25, 0.0]),
    "factory: graphs": lambda: F.create_graphs_interpolation_coordinate_transformation(
        np.array([[100.0, 30.0], [120.0, 30.0], [100.0, 45.0], [120.0, 45.0]]), [1e-3, 2e-3, 3e-3, 4e-3] * 2),
    "factory: parameter projection, then changed": lambda: _set_parameter(
        F.create_parameter_project_coordinate_transformation(ref("wgs84"), ref("utm50"), lm.eCoordinateFrame7Parameter,
                                                             SEVEN)),
    "factory: chain extended": lambda: _extended(
        F.create_bursa7_coordinate_transformation(ref("wgs84"), ref("wgs84"), SEVEN)),
}


def _set_parameter(t):
    t.set_parameter(lm.eGeocentricTranslation3Parameter, [1, 2, 3])
    return t


def _extended(c):
    c.add(F.create_wgs84_to_gcj02_coordinate_transformation())
    c.add(F.create_plane4_patameter_coordinate_transformation([1.0, 2.0, 3.0, 4.0]))
    return c


def _set_target(t):
    t.target = ref("mercator")
    return t


def _set_precision(t, value):
    t.precision = value
    return t


def transformed(t):
    points = POINTS.copy()
    ok = t.transform(points)
    return ok, points


@pytest.mark.parametrize("name", REFERENCES)
def test_reference_round_trip(name):
    original = REFERENCES[name]()
    copy = pickle.loads(pickle.dumps(original))
    assert copy.is_null == original.is_null
    assert copy.name == original.name
    if not original.is_null:
        assert copy.is_same(original) and copy.export_to_proj4() == original.export_to_proj4()


@pytest.mark.parametrize("name", TRANSFORMATIONS)
def test_transformation_round_trip(name):
    original = TRANSFORMATIONS[name]()
    copy = pickle.loads(pickle.dumps(original))
    copy_of_copy = pickle.loads(pickle.dumps(copy))
    assert type(copy) is type(original) and type(copy_of_copy) is type(original)
    ok, expected = transformed(original)
    for rebuilt in (copy, copy_of_copy):
        rebuilt_ok, actual = transformed(rebuilt)
        assert ok == rebuilt_ok
        assert np.array_equal(actual, expected)


def test_rebuilt_in_another_process():
    # The other process imports the module afresh and shares nothing with this one.
    names = list(TRANSFORMATIONS)
    payload = pickle.dumps([TRANSFORMATIONS[n]() for n in names] + [REFERENCES["renamed"]()])
    script = ("import pickle, sys, numpy as np\n"
              "*ts, r = pickle.loads(sys.stdin.buffer.read())\n"
              f"points = {POINTS.tolist()!r}\n"
              "out = []\n"
              "for t in ts:\n"
              "    p = np.array(points); t.transform(p); out.append(p)\n"
              "sys.stdout.buffer.write(pickle.dumps((out, r.name, r.export_to_wkt())))\n")
    result = subprocess.run([sys.executable, "-c", script], input=payload, capture_output=True, check=True)
    arrays, name, wkt = pickle.loads(result.stdout)
    for n, actual in zip(names, arrays):
        assert np.array_equal(actual, transformed(TRANSFORMATIONS[n]())[1]), n
    assert name == "site grid" and wkt == REFERENCES["renamed"]().export_to_wkt()


def test_unpickled_arrays_are_float64_arrays():
    # An unpickled array carries its own float64 dtype object.
    points = pickle.loads(pickle.dumps(POINTS.copy()))
    assert lm.LmWGS84ToGCJ02CoordinateTransformation().transform(points)
    assert F.compute_plane4_parameter(points, points).parameters[0] == 0.0
