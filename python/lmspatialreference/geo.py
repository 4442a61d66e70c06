"""GeoPandas and shapely: every coordinate of a layer or geometry in another CRS.

``to_crs(frame_or_geometry, crs_to)`` takes a GeoDataFrame, a GeoSeries or a
shapely geometry and returns a new one of the same kind. ``crs_to`` takes
what ``Transformer.from_crs`` takes, so ``to_crs(frame, "GCJ02")`` and
``to_crs(frame, "EPSG:4547")`` both work. A layer in GCJ-02 or BD-09 keeps
the CRS WGS 84 (EPSG:4326) and says which offset it carries in
``frame.attrs["lmspatialreference_offset"]``; ``to_crs`` reads that back, so
``to_crs(to_crs(frame, "GCJ02"), "WGS84")`` returns to ``frame`` within the
reverse precision.
"""

import numpy as _np

from .transformer import Transformer

# The attribute that marks a layer whose coordinates carry a China offset.
OFFSET_ATTRIBUTE = "lmspatialreference_offset"


def _parts(geometry, two, three):
    """Appends the coordinate arrays of geometry, in the order _rebuilt takes them."""
    if geometry is None or geometry.is_empty:
        return
    kind = geometry.geom_type
    if kind in ("Point", "LineString", "LinearRing"):
        (three if geometry.has_z else two).append(_np.asarray(geometry.coords, dtype=_np.float64))
    elif kind == "Polygon":
        for ring in (geometry.exterior, *geometry.interiors):
            _parts(ring, two, three)
    else:  # Multi* and GeometryCollection
        for part in geometry.geoms:
            _parts(part, two, three)


def _rebuilt(geometry, take):
    """geometry with its coordinates replaced by take(has_z, count)."""
    from shapely import geometry as g

    if geometry is None or geometry.is_empty:
        return geometry
    kind = geometry.geom_type
    if kind in ("Point", "LineString", "LinearRing"):
        coordinates = take(geometry.has_z, len(geometry.coords))
        return getattr(g, kind)(coordinates[0] if kind == "Point" else coordinates)
    if kind == "Polygon":
        return g.Polygon(_rebuilt(geometry.exterior, take), [_rebuilt(r, take) for r in geometry.interiors])
    return getattr(g, kind)([_rebuilt(part, take) for part in geometry.geoms])


def _apply(transformer, points):
    """points (n, 2) or (n, 3) transformed by transformer into a new array."""
    if len(points) == 0:
        return points
    columns = transformer.transform(*points.T)
    return _np.column_stack(columns)


# A point in the little-endian WKB that GEOS writes: byte order, type, x, y
# (and z). The 3-D type carries the EWKB flag or the ISO offset.
_WKB_POINT = {2: _np.dtype([("order", "u1"), ("type", "<u4"), ("x", "<f8"), ("y", "<f8")]),
              3: _np.dtype([("order", "u1"), ("type", "<u4"), ("x", "<f8"), ("y", "<f8"), ("z", "<f8")])}
_WKB_POINT_TYPES = {2: (1,), 3: (0x80000001, 1001)}
_WKB_COLLECTION_HEADER = 9  # byte order, type, count


def _point_coordinates(points):
    """The coordinates of shapely Points as an (n, 2) or (n, 3) array, read from one WKB text of
    them all; None when they mix 2-D and 3-D or include an empty point."""
    from shapely.geometry import GeometryCollection

    wkb = GeometryCollection(points).wkb
    for dimension, record in _WKB_POINT.items():
        if len(wkb) != _WKB_COLLECTION_HEADER + record.itemsize * len(points) or wkb[0] != 1:
            continue
        fields = _np.frombuffer(wkb, dtype=record, offset=_WKB_COLLECTION_HEADER)
        if (fields["order"] != 1).any() or not _np.isin(fields["type"], _WKB_POINT_TYPES[dimension]).all():
            return None
        coordinates = _np.column_stack([fields[axis] for axis in "xyz"[:dimension]])
        return coordinates if _np.isfinite(coordinates).all() else None  # an empty point is NaN
    return None


def _points(transformer, points):
    """The shapely Points transformed, or None where _point_coordinates cannot read them.

    A layer of points is the common case, and the one where the cost of
    shapely per geometry dominates: the coordinates are read in one WKB text
    and each point made once, from plain floats."""
    from shapely.geometry import Point

    coordinates = _point_coordinates(points)
    if coordinates is None:
        return None
    return [Point(*xyz) for xyz in zip(*(c.tolist() for c in transformer.transform(*coordinates.T)))]


def _geometries(transformer, geometries):
    """A list of the geometries transformed with one batch for 2-D and one for 3-D coordinates."""
    from shapely.geometry import Point

    present = [g for g in geometries if g is not None]
    if present and all(type(g) is Point for g in present):
        moved = _points(transformer, present)
        if moved is not None:
            moved = iter(moved)
            return [None if g is None else next(moved) for g in geometries]
    two, three = [], []
    for geometry in geometries:
        _parts(geometry, two, three)
    batches = {False: _apply(transformer, _np.concatenate(two) if two else _np.empty((0, 2))),
               True: _apply(transformer, _np.concatenate(three) if three else _np.empty((0, 3)))}
    cursor = {False: 0, True: 0}

    def take(has_z, count):
        start = cursor[has_z]
        cursor[has_z] = start + count
        return batches[has_z][start:start + count]

    return [_rebuilt(geometry, take) for geometry in geometries]


def _source(obj, crs_from):
    if crs_from is not None:
        return crs_from
    attrs = getattr(obj, "attrs", None) or {}
    if attrs.get(OFFSET_ATTRIBUTE):
        return attrs[OFFSET_ATTRIBUTE]
    crs = getattr(obj, "crs", None)
    if crs is None:
        raise ValueError("the input has no CRS: give crs_from")
    return crs


def _result_crs(transformer):
    if transformer.target_offset:
        return "EPSG:4326"
    if transformer.target_crs is None:
        return None
    code = transformer.target_crs.to_epsg()
    return f"EPSG:{code}" if code else transformer.target_crs.to_wkt()


def to_crs(frame_or_geometry, crs_to, crs_from=None, precision=0.001):
    """A new GeoDataFrame, GeoSeries or shapely geometry with every coordinate in ``crs_to``.

    ``crs_to`` may also be a ``Transformer`` (an estimated one, say), which is
    then applied as it is and gives the result its target CRS.

    Points, lines, polygons with holes, multi-part geometries and collections
    are handled; z values are kept (and transformed where the CRSs have
    heights). The source CRS is ``crs_from`` when given, else the layer's
    offset marker or its ``crs``; a shapely geometry needs ``crs_from``.
    ``precision`` is the reverse precision of the offsets in metres. A point
    that cannot be transformed comes back as ``inf``.
    """
    import geopandas as gpd
    from shapely.geometry.base import BaseGeometry

    obj = frame_or_geometry
    given = crs_to if isinstance(crs_to, Transformer) else None
    if isinstance(obj, BaseGeometry):
        if crs_from is None and given is None:
            raise ValueError("a shapely geometry carries no CRS: give crs_from")
        return _geometries(given or Transformer.from_crs(crs_from, crs_to, precision), [obj])[0]
    if not isinstance(obj, (gpd.GeoDataFrame, gpd.GeoSeries)):
        raise TypeError(f"to_crs takes a GeoDataFrame, a GeoSeries or a shapely geometry, "
                        f"not {type(obj).__name__}")
    transformer = given or Transformer.from_crs(_source(obj, crs_from), crs_to, precision)
    series = obj.geometry if isinstance(obj, gpd.GeoDataFrame) else obj
    # The geometries in and out through object arrays: iterating a GeoSeries
    # goes through GeoPandas element by element, and a GeoSeries made from a
    # list checks every element again.
    geometries = _geometries(transformer, series.to_numpy().tolist())
    column = _np.empty(len(geometries), dtype=object)
    for i, geometry in enumerate(geometries):
        column[i] = geometry
    moved = gpd.GeoSeries(gpd.array.GeometryArray(column), index=series.index,
                          crs=_result_crs(transformer), name=series.name)
    if isinstance(obj, gpd.GeoDataFrame):
        result = obj.copy()
        result[obj.geometry.name] = moved
        result = result.set_crs(moved.crs, allow_override=True)
    else:
        result = moved
    result.attrs = {k: v for k, v in obj.attrs.items() if k != OFFSET_ATTRIBUTE}
    if transformer.target_offset:
        result.attrs[OFFSET_ATTRIBUTE] = transformer.target_offset
    return result
