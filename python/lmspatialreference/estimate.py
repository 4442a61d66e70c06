"""Parameters estimated from control points, ready to apply.

Each estimator takes the same points measured in two systems, as two (n, 2)
or (n, 3) arrays or DataFrames of the coordinate columns (x = longitude or
easting first), and returns an ``Estimate``::

    import lmspatialreference as lm
    fit = lm.estimate.bursa7(points[["lon", "lat", "h"]], surveyed[["x", "y", "z"]],
                             "WGS84", "EPSG:4547")
    fit.parameters        # {'dx': ..., 'dy': ..., 'dz': ..., 'rx': ..., ..., 'scale_ppm': ...}
    fit.mean_error, fit.residuals
    x, y, z = fit.transformer.transform(lon, lat, h)

Shifts are in metres, rotations in seconds of arc, the scale change in parts
per million, a rotation axis in degrees of latitude and longitude, a centre in
geocentric metres. Points that cannot determine the parameters raise ValueError.
"""

import numpy as _np

from . import _lmspatialreference as _native
from .crs import CRS
from .transformer import Transformer, _factory

_F = _native.LmCoordinateTransformationFactory
_SEVEN = ("dx", "dy", "dz", "rx", "ry", "rz", "scale_ppm")
_PLANE4 = ("dx", "dy", "rotation", "scale_ppm")
_CUBE4 = ("dx", "dy", "dz", "rotation")


class Estimate:
    """Estimated ``parameters`` (a dict in published units), ``mean_error``, per-point
    ``residuals`` (target minus fitted, (n, dimension)) and a ``transformer`` applying them."""

    def __init__(self, names, result, transformer):
        self.parameters = dict(zip(names, (float(v) for v in result.parameters)))
        self.mean_error = float(result.mean_error)
        self.residuals = result.residuals
        self.transformer = transformer

    def __repr__(self):
        return f"<Estimate mean_error={self.mean_error:.6g} {self.parameters}>"


def _points(values, what):
    try:
        array = _np.asarray(values)
    except Exception as error:
        raise ValueError(f"{what} cannot be read as an array: {error}") from None
    if array.dtype.kind not in "fiu" or array.dtype == _np.bool_:
        raise TypeError(f"{what} must hold real numbers, not {array.dtype}")
    if array.ndim != 2 or array.shape[1] not in (2, 3):
        raise ValueError(f"{what} must have shape (n, 2) or (n, 3), not {array.shape}")
    array = _np.ascontiguousarray(array, dtype=_np.float64)
    if not _np.isfinite(array).all():
        raise ValueError(f"{what} holds NaN or infinite values")
    return array


def _pair(source, target, least):
    source, target = _points(source, "source_points"), _points(target, "target_points")
    if source.shape != target.shape:
        raise ValueError(f"source_points and target_points must have one shape, not {source.shape} "
                         f"and {target.shape}")
    if len(source) < least:
        raise ValueError(f"at least {least} control points are needed, not {len(source)}")
    return source, target


def _reverse(kind, parameters, axis=None):
    reverse = _F.compute_reverse_parameter(kind, parameters, axis)
    return None if reverse is None else list(reverse)


def _plane4_inverse(dx, dy, seconds, ppm):
    # X = t + k R(theta) x is undone by x = t' + (1 / k) R(-theta) X with
    # t' = -(1 / k) R(-theta) t. The library's reverse for this layout puts
    # the first shift in both places, which is its own deliberate output,
    # so the inverse is formed here.
    k, theta = 1.0 + ppm / 1e6, _np.radians(seconds / 3600.0)
    if not k > 0:
        return None
    c, s = _np.cos(theta), _np.sin(theta)
    back_x, back_y = -(c * dx + s * dy) / k, -(-s * dx + c * dy) / k
    return [float(back_x), float(back_y), -seconds, (1.0 / k - 1.0) * 1e6]


def plane4(source_points, target_points):
    """The plane four-parameter similarity: dx, dy, rotation (seconds of arc), scale_ppm."""
    source, target = _pair(source_points, target_points, 2)
    result = _F.compute_plane4_parameter(source, target)
    values = list(result.parameters)
    back = _plane4_inverse(*values)
    # Plane control points name no CRS, so neither end of the Transformer has one.
    transformer = Transformer((_factory, ("create_plane4_patameter_coordinate_transformation", values)),
                              None, None,
                              None if back is None else
                              (_factory, ("create_plane4_patameter_coordinate_transformation", back)))
    return Estimate(_PLANE4, result, transformer)


def bursa7(source_points, target_points, crs_from, crs_to):
    """The Bursa-Wolf seven parameters between two CRSs, from points with heights ((n, 3))."""
    source, target = _pair(source_points, target_points, 3)
    crs_from, crs_to = CRS(crs_from), CRS(crs_to)
    result = _F.compute_bursa7_parameter(crs_from.reference, crs_to.reference, source, target)
    values = list(result.parameters)
    back = _reverse(_native.eBursa7Parameter, values)
    transformer = Transformer(
        (_factory, ("create_bursa7_coordinate_transformation", crs_from.reference, crs_to.reference, values)),
        crs_from, crs_to,
        None if back is None else
        (_factory, ("create_bursa7_coordinate_transformation", crs_to.reference, crs_from.reference, back)))
    return Estimate(_SEVEN, result, transformer)


def plane7(source_points, target_points, crs_from, crs_to):
    """The plane seven parameters between two CRSs; with (n, 3) points the three-dimensional model."""
    source, target = _pair(source_points, target_points, 3)
    crs_from, crs_to = CRS(crs_from), CRS(crs_to)
    three = source.shape[1] == 3
    estimate = _F.compute_plane7_parameter_3d if three else _F.compute_plane7_parameter
    result = estimate(crs_from.reference, crs_to.reference, source, target)
    creator = ("create_3d_plane7_patameter_coordinate_transformation" if three
               else "create_plane7_patameter_coordinate_transformation")
    transformer = Transformer((_factory, (creator, crs_from.reference, crs_to.reference, list(result.parameters))),
                              crs_from, crs_to)
    return Estimate(_SEVEN, result, transformer)


def _axis(axis):
    """(latitude, longitude) in degrees of a rotation axis, checked."""
    try:
        latitude, longitude = (float(v) for v in axis)
    except (TypeError, ValueError):
        raise TypeError(f"axis must be (latitude, longitude) in degrees, not {axis!r}") from None
    if not (abs(latitude) <= 90 and abs(longitude) <= 360):
        raise ValueError(f"axis must be (latitude, longitude) in degrees, not {axis!r}")
    return latitude, longitude


def cube4(source_points, target_points, crs_from, crs_to, axis):
    """The cube four parameters between two CRSs from points with heights ((n, 3)): shifts dx, dy,
    dz and a rotation (seconds of arc) about the axis through the Earth's centre and the point
    ``axis`` = (latitude, longitude) in degrees. Residuals are geocentric metres."""
    source, target = _pair(source_points, target_points, 2)
    crs_from, crs_to = CRS(crs_from), CRS(crs_to)
    latitude, longitude = _axis(axis)
    phi, lam = _np.radians(latitude), _np.radians(longitude)
    result = _F.compute_cube4_parameter(crs_from.reference, crs_to.reference, phi, lam, source, target)
    values = list(result.parameters)
    back = _reverse(_native.eCube4Parameter, values, [latitude, longitude])
    creator = "create_cube4_patameter_coordinate_transformation"
    transformer = Transformer(
        (_factory, (creator, crs_from.reference, crs_to.reference, phi, lam, values)), crs_from, crs_to,
        None if back is None else (_factory, (creator, crs_to.reference, crs_from.reference, phi, lam, back)))
    return Estimate(_CUBE4, result, transformer)


def molodensky(source_points, target_points, crs_from, crs_to, centre=None):
    """The Molodensky seven parameters between two CRSs from points with heights ((n, 3)), the
    rotations and scale acting about ``centre`` (geocentric X, Y, Z in metres; None for the
    Earth's centre). Residuals are geocentric metres. The Transformer has no inverse."""
    source, target = _pair(source_points, target_points, 3)
    crs_from, crs_to = CRS(crs_from), CRS(crs_to)
    if centre is not None:
        centre = _np.asarray(centre, dtype=_np.float64).reshape(-1)
        if centre.shape != (3,) or not _np.isfinite(centre).all():
            raise ValueError(f"centre must be three finite geocentric coordinates, not {centre!r}")
        centre = list(centre)
    result = _F.compute_molodensky_parameter(crs_from.reference, crs_to.reference, source, target, centre)
    values = list(result.parameters)
    transformer = Transformer((_factory, ("create_molodensky_coordinate_transformation", crs_from.reference,
                                          crs_to.reference, values, centre)), crs_from, crs_to)
    return Estimate(_SEVEN, result, transformer)
