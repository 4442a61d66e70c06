"""The factory: creators against closed forms, estimators recovering known parameters, refusals."""
import math

import numpy as np
import pytest

import lmspatialreference as lm

F = lm.LmCoordinateTransformationFactory
RNG = np.random.default_rng(9)
PLANE = RNG.uniform(-5000, 5000, (6, 2)) + [500000.0, 3000000.0]
SPACE = RNG.uniform(-1e5, 1e5, (5, 3)) + [-2.2e6, 4.4e6, 4.0e6]
LONLAT = np.column_stack([RNG.uniform(110, 120, 6), RNG.uniform(20, 40, 6), RNG.uniform(-50, 500, 6)])
WGS84 = lm.LmSpatialReference(lm.eWGS84)
SECOND = math.pi / 180 / 3600
SEVEN = [-15.0, 120.5, 60.25, 1.5, -0.75, 2.0, 3.5]


def similarity(points, dx, dy, theta_seconds, m_ppm):
    # The plane four-parameter model in closed form.
    k, theta = 1 + m_ppm * 1e-6, math.radians(theta_seconds / 3600)
    a, b = k * math.cos(theta) - 1, k * math.sin(theta)
    x, y = points[:, 0], points[:, 1]
    return np.column_stack([x + dx + x * a - y * b, y + dy + x * b + y * a])


def geocentric(p, a=6378137.0, invf=298.257223563):
    f = 1 / invf
    e2, lon, lat, h = f * (2 - f), np.radians(p[:, 0]), np.radians(p[:, 1]), p[:, 2]
    n = a / np.sqrt(1 - e2 * np.sin(lat) ** 2)
    return np.column_stack([(n + h) * np.cos(lat) * np.cos(lon), (n + h) * np.cos(lat) * np.sin(lon),
                            (n * (1 - e2) + h) * np.sin(lat)])


def bursa(p, dx, dy, dz, ex, ey, ez, m_ppm):
    # The linearised Bursa-Wolf model in geocentric metres.
    ex, ey, ez, m = ex * SECOND, ey * SECOND, ez * SECOND, m_ppm * 1e-6
    x, y, z = p.T
    return np.column_stack([x + dx - z * ey + y * ez + m * x, y + dy + z * ex - x * ez + m * y,
                            z + dz - y * ex + x * ey + m * z])


def cube(p, phi, lam, shift, theta_seconds):
    # A small rotation theta about the axis (phi, lam) plus a shift: r + s + theta (u x r).
    u = [math.cos(phi) * math.cos(lam), math.cos(phi) * math.sin(lam), math.sin(phi)]
    return p + shift + theta_seconds * SECOND * np.cross(u, p)


def applied(t, points):
    points = np.array(points, dtype=float)
    t.transform(points)
    return points


CORNERS = [[500000.0, 3000000.0], [510000.0, 3000000.0], [500000.0, 3010000.0], [510000.0, 3010000.0]]

# (creator, input points, expected in closed form or through another path, tolerance)
CREATORS = {
    "plane4": (lambda: F.create_plane4_patameter_coordinate_transformation([120.5, -80.25, 12.0, 7.5]),
               PLANE, lambda p: similarity(p, 120.5, -80.25, 12.0, 7.5), 1e-6),
    "geodetic to geocentric": (lambda: F.create_geodetic_to_geocentric_coordinate_transformation(WGS84),
                               LONLAT, geocentric, 1e-6),
    "geocentric to geodetic": (lambda: F.create_geocentric_to_geodetic_coordinate_transformation(WGS84),
                               geocentric(LONLAT), lambda p: LONLAT, 1e-6),
    "Bursa, geocentric": (lambda: F.create_bursa7_coordinate_transformation(None, None, SEVEN),
                          SPACE, lambda p: bursa(p, *SEVEN), 1e-6),
    "cube, geocentric": (lambda: F.create_cube4_patameter_coordinate_transformation(None, None, 0.6, 2.0,
                                                                                    [10.0, -5.0, 3.0, 1.5]),
                         SPACE, lambda p: cube(p, 0.6, 2.0, [10.0, -5.0, 3.0], 1.5), 1e-6),
    "Molodensky shift as Bursa shift": (
        lambda: F.create_molodensky_coordinate_transformation(WGS84, WGS84, [5, -7, 9, 0, 0, 0, 0], [1e6, 2e6, 3e6]),
        LONLAT, lambda p: applied(F.create_bursa7_coordinate_transformation(WGS84, WGS84, [5, -7, 9, 0, 0, 0, 0]), p),
        1e-9),
    "plane seven, no parameters": (
        lambda: F.create_plane7_patameter_coordinate_transformation(WGS84, WGS84, [0] * 7), LONLAT, lambda p: p, 1e-9),
    "graphs, equal offsets": (
        lambda: F.create_graphs_interpolation_coordinate_transformation(CORNERS, [[3.0, -4.0]] * 4),
        PLANE, lambda p: p + [3.0, -4.0], 1e-9),
    "plane fitting, shift": (lambda: F.create_plane_fitting_coordinate_transformation(PLANE, PLANE + [7.0, -9.0]),
                             PLANE, lambda p: p + [7.0, -9.0], 1e-6),
    "geoid fitting, shift": (
        lambda: F.create_geoid_fitting_coordinate_transformation(WGS84, WGS84, LONLAT, LONLAT + [1e-3, -2e-3, 0]),
        LONLAT[:, :2], lambda p: p + [1e-3, -2e-3], 1e-9),
    "affine": (lambda: F.create_affine_coordinate_transformation(PLANE, PLANE * 1.5 + [3.0, -4.0]),
               PLANE, lambda p: p * 1.5 + [3.0, -4.0], 1e-6),
    "converse of plane4": (lambda: F.create_converse_coordinate_transformation(
        F.create_plane4_patameter_coordinate_transformation([120.5, -80.25, 12.0, 7.5]), 1e-12),
        similarity(PLANE, 120.5, -80.25, 12.0, 7.5), lambda p: PLANE, 1e-5),
}


@pytest.mark.parametrize("name", CREATORS)
def test_creators_against_closed_forms(name):
    create, points, expected, tolerance = CREATORS[name]
    t = create()
    assert isinstance(t, lm.LmCoordinateTransformation)
    np.testing.assert_allclose(applied(t, points), expected(points), rtol=0, atol=tolerance)


@pytest.mark.parametrize("create,cls", [
    (lambda: F.create_project_coordinate_transformation(WGS84, WGS84), lm.LmProjectCoordinateTransformation),
    (lambda: F.create_parameter_project_coordinate_transformation(WGS84, WGS84, lm.eGeocentricTranslation3Parameter,
                                                                   [1, 2, 3]),
     lm.LmParameterProjectCoordinateTransformation),
    (F.create_wgs84_to_gcj02_coordinate_transformation, lm.LmWGS84ToGCJ02CoordinateTransformation),
    (F.create_wgs84_to_bd09_coordinate_transformation, lm.LmWGS84ToBD09CoordinateTransformation),
    (lambda: F.create_gcj02_to_wgs84_coordinate_transformation(0), lm.LmGCJ02ToWGS84CoordinateTransformation),
    (lambda: F.create_bd09_to_wgs84_coordinate_transformation(0.01), lm.LmBD09ToWGS84CoordinateTransformation),
    (lambda: F.create_bursa7_coordinate_transformation(WGS84, WGS84, SEVEN), lm.LmCoordinateTransformationCombination),
])
def test_creators_hand_out_their_bound_class(create, cls):
    assert type(create()) is cls


def test_offset_inverse_precision_defaults_to_a_millimetre():
    assert F.create_gcj02_to_wgs84_coordinate_transformation(0).precision == 0.001


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


def test_cube4_recovers_its_parameters():
    result = F.compute_cube4_parameter(None, None, 0.6, 2.0, SPACE, cube(SPACE, 0.6, 2.0, [10.0, -5.0, 3.0], 1.5))
    np.testing.assert_allclose(result.parameters, [10.0, -5.0, 3.0, 1.5], rtol=0, atol=1e-5)
    assert result.residuals.shape == (5, 3) and result.mean_error < 1e-6


@pytest.mark.parametrize("centre", [None, [-2.2e6, 4.4e6, 4.0e6]])
def test_molodensky_recovers_a_pure_shift(centre):
    result = F.compute_molodensky_parameter(None, None, SPACE, SPACE + [10.0, -20.0, 30.0], centre)
    np.testing.assert_allclose(result.parameters, [10, -20, 30, 0, 0, 0, 0], rtol=0, atol=1e-5)
    assert result.mean_error < 1e-6


@pytest.mark.parametrize("type_,parameters,axis,expected", [
    # Zero rotations and scale: the negated shifts.
    (lm.eBursa7Parameter, [1, -2, 3, 0, 0, 0, 0], None, [-1, 2, -3, 0, 0, 0, 0]),
    (lm.eLinear7Parameter, [1, -2, 3, 0, 0, 0, 0], None, [-1, 2, -3, 0, 0, 0, 0]),
    (lm.eCube4Parameter, [1, -2, 3, 0], [30, 120], [-1, 2, -3, 0]),
    # A pure scale k: shifts divided by k, scale 1/k; both plane shifts take the first.
    (lm.ePlane4Parameter, [10, 20, 0, 1e5], None, [-10 / 1.1, -10 / 1.1, 0, (1 / 1.1 - 1) * 1e6]),
    # No reverse: a collapsing scale (the C++ inversion would end the process) or a NaN.
    (lm.eBursa7Parameter, [1, 2, 3, 0, 0, 0, -1e6], None, None),
    (lm.ePlane4Parameter, [1, 2, 3, -1e6], None, None),
    (lm.eLinear7Parameter, [1, 2, 3, math.nan, 0, 0, 0], None, None),
])
def test_reverse_parameters(type_, parameters, axis, expected):
    reverse = F.compute_reverse_parameter(type_, parameters, axis)
    if expected is None:
        assert reverse is None
    else:
        np.testing.assert_allclose(reverse, expected, rtol=0, atol=1e-9)


def test_reverse_of_a_linear_seven_undoes_it():
    forward = [-15.0, 120.5, 60.25, 1.5, -0.75, 2.0, 3.5]
    reverse = F.compute_reverse_parameter(lm.eLinear7Parameter, forward)
    # The linear model with the scale on the diagonal only: R = (1 + m) I + [rotations].
    def linear(p, dx, dy, dz, ex, ey, ez, m):
        ex, ey, ez, k = ex * SECOND, ey * SECOND, ez * SECOND, 1 + m * 1e-6
        rotation = np.array([[k, ez, -ey], [-ez, k, ex], [ey, -ex, k]])
        return p @ rotation.T + [dx, dy, dz]
    # The reverse reads its rotations off R^-1, which is of that form only to
    # first order: the round trip is off by rotation^2 * |r|, about 1e-10 * 6e6 m.
    np.testing.assert_allclose(linear(linear(SPACE, *forward), *reverse), SPACE, rtol=0, atol=2e-3)


def test_grid_offsets_at_the_equator():
    # On the equator at longitude 0 a shift dY turns into dY / a radians of
    # longitude and dZ into dZ / M = dZ / (a (1 - e^2)) radians of latitude.
    a, f = 6378137.0, 1 / 298.257223563
    offsets = F.compute_grid_coordinates_offset(WGS84, WGS84, [0.0, 100.0, 50.0], [[0.0, 0.0]] * 4)
    np.testing.assert_allclose(offsets, [[100 / a, 50 / (a * (1 - f * (2 - f)))]] * 4, rtol=1e-12)
    assert F.compute_grid_coordinates_offset(None, WGS84, [0, 0, 0], [0.0] * 8) is None


@pytest.mark.parametrize("estimate", [
    lambda s, t: F.compute_cube4_parameter(None, None, 0.6, 2.0, s, t),
    lambda s, t: F.compute_molodensky_parameter(None, None, s, t),
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
