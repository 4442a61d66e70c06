"""Estimation on the user's data: named parameters, residuals and a ready Transformer."""
import math

import numpy as np
import pandas as pd
import pyproj
import pytest

import lmspatialreference as lm
from lmspatialreference import estimate

RNG = np.random.default_rng(7)
PLANE = RNG.uniform(-5000, 5000, (8, 2)) + [500000.0, 3000000.0]


def similarity(points, dx, dy, theta_seconds, m_ppm):
    k, theta = 1 + m_ppm * 1e-6, math.radians(theta_seconds / 3600)
    x, y = points[:, 0], points[:, 1]
    return np.column_stack([dx + k * (x * math.cos(theta) - y * math.sin(theta)),
                            dy + k * (x * math.sin(theta) + y * math.cos(theta))])


def test_plane4_from_dataframe_columns():
    target = similarity(PLANE, 120.5, -80.25, 12.0, 7.5)
    source = pd.DataFrame({"x": PLANE[:, 0], "y": PLANE[:, 1], "name": "p"})
    fit = estimate.plane4(source[["x", "y"]], target)
    assert list(fit.parameters) == ["dx", "dy", "rotation", "scale_ppm"]
    np.testing.assert_allclose(list(fit.parameters.values()), [120.5, -80.25, 12.0, 7.5], rtol=1e-6)
    assert fit.mean_error < 1e-6 and fit.residuals.shape == (8, 2)
    np.testing.assert_allclose(np.column_stack(fit.transformer.transform(*PLANE.T)), target, atol=1e-6)
    np.testing.assert_allclose(np.column_stack(fit.transformer.inverse().transform(*target.T)), PLANE, atol=1e-4)
    assert fit.transformer.target_crs is None and repr(fit.transformer) == "<Transformer plane -> plane>"


def test_bursa7_recovers_its_parameters():
    seven = [-15.0, 120.5, 60.25, 1.5, -0.75, 2.0, 3.5]
    source = np.column_stack([RNG.uniform(110, 120, 6), RNG.uniform(20, 40, 6), RNG.uniform(-50, 500, 6)])
    made = lm.LmCoordinateTransformationFactory.create_bursa7_coordinate_transformation(
        lm.LmSpatialReference(lm.eWGS84), lm.LmSpatialReference(lm.eCGCS2000), seven)
    target = source.copy()
    made.transform(target)
    fit = estimate.bursa7(source, target, "WGS84", "CGCS2000")
    assert list(fit.parameters) == ["dx", "dy", "dz", "rx", "ry", "rz", "scale_ppm"]
    np.testing.assert_allclose(list(fit.parameters.values()), seven, rtol=1e-3, atol=1e-3)
    np.testing.assert_allclose(np.column_stack(fit.transformer.transform(*source.T)), target, atol=1e-6)


@pytest.mark.parametrize("source,target,error", [
    (PLANE, PLANE[:5], ValueError),
    (PLANE.astype(str), PLANE, TypeError),
    (PLANE[:, :1], PLANE[:, :1], ValueError),
    (np.where(PLANE == PLANE[0, 0], np.nan, PLANE), PLANE, ValueError),
    (PLANE[:1], PLANE[:1], ValueError),
])
def test_refusals_leave_inputs(source, target, error):
    before = source.copy()
    with pytest.raises(error):
        estimate.plane4(source, target)
    np.testing.assert_array_equal(source, before)



GEOGRAPHIC = np.column_stack([RNG.uniform(110, 120, 6), RNG.uniform(20, 40, 6), RNG.uniform(-50, 500, 6)])
TO_GEOCENTRIC = pyproj.Transformer.from_crs(4979, 4978, always_xy=True)


def moved_by(move):
    """GEOGRAPHIC moved in geocentric space by move, as WGS 84 degrees and heights (pyproj)."""
    moved = move(np.column_stack(TO_GEOCENTRIC.transform(*GEOGRAPHIC.T)))
    return np.column_stack(TO_GEOCENTRIC.transform(*moved.T, direction="INVERSE"))


def test_cube4_recovers_a_rotation_about_its_axis():
    # Shift (3, -2, 1) m and 2 seconds about the axis through (30 N, 115 E), applied by hand.
    phi, lam, theta = np.radians(30.0), np.radians(115.0), np.radians(2.0 / 3600)
    axis = np.array([np.cos(phi) * np.cos(lam), np.cos(phi) * np.sin(lam), np.sin(phi)])
    target = moved_by(lambda xyz: xyz + [3.0, -2.0, 1.0] + theta * np.cross(axis, xyz))
    fit = estimate.cube4(GEOGRAPHIC, target, "WGS84", "WGS84", axis=(30.0, 115.0))
    assert list(fit.parameters) == ["dx", "dy", "dz", "rotation"] and fit.residuals.shape == (6, 3)
    np.testing.assert_allclose(list(fit.parameters.values()), [3.0, -2.0, 1.0, 2.0], atol=1e-4)
    assert fit.mean_error < 1e-4
    np.testing.assert_allclose(np.column_stack(fit.transformer.transform(*GEOGRAPHIC.T)), target, atol=1e-7)
    back = np.column_stack(fit.transformer.inverse().transform(*target.T))
    np.testing.assert_allclose(back[:, :2], GEOGRAPHIC[:, :2], atol=1e-8)


def test_molodensky_recovers_a_shift_and_scale_about_its_centre():
    centre = np.array([-2.2e6, 5.0e6, 3.0e6])
    target = moved_by(lambda xyz: centre + [10.0, -20.0, 5.0] + (xyz - centre) * (1 + 4e-6))
    fit = estimate.molodensky(pd.DataFrame(GEOGRAPHIC), target, "WGS84", "WGS84", centre=centre)
    assert list(fit.parameters) == ["dx", "dy", "dz", "rx", "ry", "rz", "scale_ppm"]
    np.testing.assert_allclose(list(fit.parameters.values()), [10, -20, 5, 0, 0, 0, 4], atol=1e-4)
    np.testing.assert_allclose(np.column_stack(fit.transformer.transform(*GEOGRAPHIC.T)), target, atol=1e-7)
    with pytest.raises(ValueError):
        fit.transformer.inverse()
    with pytest.raises(ValueError):
        estimate.molodensky(GEOGRAPHIC, target, "WGS84", "WGS84", centre=[1.0, 2.0])
    with pytest.raises(TypeError):
        estimate.cube4(GEOGRAPHIC, target, "WGS84", "WGS84", axis="north")
