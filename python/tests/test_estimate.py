"""Estimation on the user's data: named parameters, residuals and a ready Transformer."""
import math

import numpy as np
import pandas as pd
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
