"""The factory's estimators: known parameters recovered, refusals as ValueError, argument checks."""
import math

import numpy as np
import pytest

import lmspatialreference as lm

F = lm.LmCoordinateTransformationFactory
RNG = np.random.default_rng(9)
PLANE = RNG.uniform(-5000, 5000, (6, 2)) + [500000.0, 3000000.0]
SPACE = RNG.uniform(-1e5, 1e5, (5, 3)) + [-2.2e6, 4.4e6, 4.0e6]


def similarity(points, dx, dy, theta_seconds, m_ppm):
    # The plane four-parameter model in closed form.
    k, theta = 1 + m_ppm * 1e-6, math.radians(theta_seconds / 3600)
    a, b = k * math.cos(theta) - 1, k * math.sin(theta)
    x, y = points[:, 0], points[:, 1]
    return np.column_stack([x + dx + x * a - y * b, y + dy + x * b + y * a])


def test_plane4_recovers_its_parameters():
    expected = [120.5, -80.25, 12.0, 7.5]
    result = F.compute_plane4_parameter(PLANE, similarity(PLANE, *expected))
    np.testing.assert_allclose(result.parameters, expected, rtol=0, atol=1e-5)
    assert result.residuals.shape == (6, 2) and np.abs(result.residuals).max() < 1e-6
    assert result.mean_error < 1e-6 and result.dimension == 2 and 0 <= result.worst_point < 6


def test_bursa7_recovers_a_pure_shift_between_cartesian_sets():
    # References of None take the points as geocentric already.
    result = F.compute_bursa7_parameter(None, None, SPACE, SPACE + [10.0, -20.0, 30.0])
    np.testing.assert_allclose(result.parameters, [10, -20, 30, 0, 0, 0, 0], rtol=0, atol=1e-5)
    assert result.residuals.shape == (5, 3)


@pytest.mark.parametrize("estimate", [
    lambda s, t: F.compute_plane4_parameter(s[:, :2], t[:, :2]),
    lambda s, t: F.compute_bursa7_parameter(None, None, s, t),
    lambda s, t: F.compute_plane7_parameter(None, None, s, t),
    lambda s, t: F.compute_plane7_parameter_3d(None, None, s, t),
])
def test_points_that_cannot_determine_the_parameters_are_refused(estimate):
    one = SPACE[:1]
    with pytest.raises(ValueError):
        estimate(one, one + 1.0)
    same = np.repeat(SPACE[:1], 5, axis=0)  # five copies of one point
    with pytest.raises(ValueError):
        estimate(same, same + 1.0)


@pytest.mark.parametrize("source,target,error", [
    (PLANE, PLANE[:5], ValueError),
    (PLANE, SPACE[:, :2].copy()[:5], ValueError),
    (PLANE.astype(np.float32), PLANE, TypeError),
    (PLANE.tolist(), PLANE, TypeError),
    (np.ones((6, 4)), np.ones((6, 4)), ValueError),
])
def test_control_point_arguments_are_checked(source, target, error):
    with pytest.raises(error):
        F.compute_plane4_parameter(source, target)


def test_read_only_control_points_are_accepted():
    target = similarity(PLANE, 1.0, 2.0, 3.0, 4.0)
    target.flags.writeable = False
    assert F.compute_plane4_parameter(PLANE, target).parameters[0] == pytest.approx(1.0)
