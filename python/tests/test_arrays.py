"""Argument checks and in-place semantics of transform, and GIL release."""
import sys
import threading

import numpy as np
import pytest

import lmspatialreference as lm
from conftest import web_mercator

LONLAT = np.array([[116.391, 39.907], [-74.0, 40.7], [0.0, 0.0], [151.2, -33.9]])


def fortran(shape):
    return np.asfortranarray(np.ones(shape))


def read_only():
    a = np.ones((3, 2))
    a.flags.writeable = False
    return a


BAD_POINTS = [
    ([[1.0, 2.0]], TypeError),
    (np.ones((3, 2), dtype=np.float32), TypeError),
    (np.ones((3, 2), dtype=np.int64), TypeError),
    (np.ones((3, 2), dtype=">f8"), TypeError),          # float64, but not native byte order
    (np.ones(6), ValueError),
    (np.ones((3, 1)), ValueError),
    (np.ones((3, 4)), ValueError),
    (np.ones((3, 2, 1)), ValueError),
    (fortran((3, 2)), ValueError),
    (np.ones((6, 2))[::2], ValueError),
    (np.ones((3, 4))[:, :2], ValueError),
    (read_only(), ValueError),
]


@pytest.mark.parametrize("points,error", BAD_POINTS)
@pytest.mark.parametrize("reverse", [False, True])
def test_bad_points_raise_and_change_nothing(projection, points, error, reverse):
    before = np.array(points, copy=True)
    call = projection.reverse_transform if reverse else projection.transform
    with pytest.raises(error):
        call(points)
    assert np.array_equal(np.asarray(points), before)


@pytest.mark.parametrize("dimension", [2, 3])
def test_transform_in_place_matches_closed_form(projection, dimension):
    points = np.column_stack([LONLAT, np.full(len(LONLAT), 12.5)])[:, :dimension].copy()
    assert projection.transform(points) is True
    np.testing.assert_allclose(points[:, :2], web_mercator(LONLAT), rtol=0, atol=1e-6)
    if dimension == 3:
        assert np.all(points[:, 2] == 12.5)


def test_contiguous_slice_changes_only_its_rows(projection):
    points = LONLAT.copy()
    projection.transform(points[1:3])
    assert np.array_equal(points[[0, 3]], LONLAT[[0, 3]])
    np.testing.assert_allclose(points[1:3], web_mercator(LONLAT[1:3]), rtol=0, atol=1e-6)


def test_batch_equals_point_by_point_and_empty_batch(projection):
    points = LONLAT.copy()
    projection.transform(points)
    for (x, y), (px, py) in zip(LONLAT, points):
        assert projection.transform_point(x, y) == (px, py)
    assert projection.transform(np.empty((0, 2))) is True


def test_failures_are_return_values():
    unbuilt = lm.LmProjectCoordinateTransformation(None, lm.LmSpatialReference("not a definition"))
    points = LONLAT.copy()
    assert unbuilt.transform(points) is False
    assert unbuilt.transform_point(1.0, 2.0) is None
    assert lm.LmWGS84ToGCJ02CoordinateTransformation().reverse_transform(points) is False


def test_offsets_round_trip():
    points = LONLAT[:1].copy()
    lm.LmWGS84ToGCJ02CoordinateTransformation().transform(points)
    assert not np.array_equal(points, LONLAT[:1])
    lm.LmGCJ02ToWGS84CoordinateTransformation(0.0001).transform(points)
    np.testing.assert_allclose(points, LONLAT[:1], atol=1e-8)


@pytest.mark.parametrize("make,values", [
    (lambda v: lm.LmParameterProjectCoordinateTransformation(
        lm.LmSpatialReference(lm.eWGS84), lm.LmSpatialReference(lm.eWGS84), lm.ePositionVector7Parameter, v),
     [[1, 2, 3], [1] * 8, ["a"] * 7]),
    (lambda v: lm.LmParameterProjectCoordinateTransformation(
        lm.LmSpatialReference(lm.eWGS84), lm.LmSpatialReference(lm.eWGS84),
        lm.eGeocentricTranslation3Parameter, v), [[1] * 7, [1, 2]]),
    (lambda v: lm.LmAffineCoordinateTransformation(v), [[1] * 5, [1] * 7, 3.0]),
])
def test_parameter_arrays_are_checked(make, values):
    for value in values:
        with pytest.raises((TypeError, ValueError)):
            make(value)


def test_gil_is_released_during_transform():
    # With a huge switch interval the interpreter never takes the GIL from a
    # running thread, so the main thread can only run while the worker is
    # inside the call if the call released it.
    transformation = lm.LmGCJ02ToWGS84CoordinateTransformation(1e-6)
    points = np.tile([[116.391, 39.907]], (200_000, 1))
    started, finished = threading.Event(), []

    def work():
        started.set()
        transformation.transform(points)
        finished.append(True)

    interval = sys.getswitchinterval()
    sys.setswitchinterval(100.0)
    try:
        worker = threading.Thread(target=work)
        worker.start()
        started.wait()
        overlapped = not finished
        worker.join()
    finally:
        sys.setswitchinterval(interval)
    assert overlapped


def test_threads_share_one_transformation(projection):
    expected = np.tile(LONLAT, (5000, 1))
    projection.transform(expected)
    results = [np.tile(LONLAT, (5000, 1)) for _ in range(4)]
    threads = [threading.Thread(target=projection.transform, args=(r,)) for r in results]
    for t in threads:
        t.start()
    for t in threads:
        t.join()
    for r in results:
        assert np.array_equal(r, expected)
