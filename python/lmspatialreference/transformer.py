"""``Transformer``: coordinate transformations in the manner of ``pyproj.Transformer``."""

import numbers as _numbers
import threading as _threading

import numpy as _np

from . import _lmspatialreference as _native
from .crs import CRS, OFFSET_NAMES

# From this many points on, a projection batch is split between threads: below
# it, copying GDAL's transformation for each thread costs more than it saves.
PARALLEL_FROM = 20_000

_OFFSET_CLASSES = {
    # name: (from WGS 84, back to WGS 84)
    "GCJ02": (_native.LmWGS84ToGCJ02CoordinateTransformation, _native.LmGCJ02ToWGS84CoordinateTransformation),
    "BD09": (_native.LmWGS84ToBD09CoordinateTransformation, _native.LmBD09ToWGS84CoordinateTransformation),
}


def _offset_name(value):
    if isinstance(value, str) and value.strip().upper().replace("-", "") in OFFSET_NAMES:
        return value.strip().upper().replace("-", "")
    return None


def _tuned(transformation, parallel):
    """Block calls on every projection of ``transformation`` (chains included), parallel as asked."""
    if isinstance(transformation, _native.LmProjectCoordinateTransformation):
        transformation.block_calls = True
        transformation.parallel = parallel
    elif isinstance(transformation, _native.LmCoordinateTransformationCombination):
        for member in transformation.members:
            if member is not None:
                _tuned(member, parallel)
    return transformation


# Recipes: module-level makers, so a Transformer pickles as a recipe and is
# made afresh (and tuned) wherever it is unpickled.
def _projection(source, target):
    return _native.LmProjectCoordinateTransformation(source.reference, target.reference)


def _offset(name, forward, precision):
    to_offset, from_offset = _OFFSET_CLASSES[name]
    return to_offset() if forward else from_offset(precision)


def _factory(method, *arguments):
    return getattr(_native.LmCoordinateTransformationFactory, method)(*arguments)


def _coordinates(values, what):
    """A float64 array of ``values`` and whether they came as a scalar."""
    scalar = isinstance(values, _numbers.Real) and not isinstance(values, bool)
    try:
        array = _np.asarray(values)
    except Exception as error:  # ragged lists and the like
        raise ValueError(f"{what} cannot be read as an array: {error}") from None
    if array.dtype.kind not in "fiu" or array.dtype == _np.bool_:
        raise TypeError(f"{what} must hold real numbers, not {array.dtype}")
    array = array.astype(_np.float64, order="C", copy=False).reshape(-1)
    # min and max carry a NaN through and meet any infinity, without the
    # temporary array of a full isfinite.
    if array.size and not (_np.isfinite(array.min()) and _np.isfinite(array.max())):
        raise ValueError(f"{what} holds NaN or infinite values")
    return array, scalar


class Transformer:
    """Moves coordinates from one CRS to another.

    Made with ``Transformer.from_crs`` (or by an estimator, whose plane
    transformations have no CRS at either end: None). ``transform`` returns new arrays with
    x = longitude or easting; a point that cannot be transformed comes back
    as ``inf``. Projections hand GDAL their points in blocks and split large
    arrays between threads, with the same results as point by point.
    """

    def __init__(self, recipe, source_crs, target_crs, inverse_recipe=None, offsets=(None, None)):
        self._recipe = recipe
        self._inverse_recipe = inverse_recipe
        self.source_crs = source_crs
        self.target_crs = target_crs
        # "GCJ02" or "BD09" where an end is an offset of WGS 84, else None.
        self.source_offset, self.target_offset = offsets
        self._made = {}
        self._making = _threading.Lock()

    @classmethod
    def from_crs(cls, crs_from, crs_to, precision=0.001):
        """The transformation from ``crs_from`` to ``crs_to``.

        Each takes anything ``CRS`` takes, or "GCJ02" or "BD09" for the China
        offsets, paired with WGS 84 (in either direction). ``precision`` is
        how close, in metres, the way back from an offset comes.
        """
        if isinstance(precision, bool) or not isinstance(precision, _numbers.Real) or not precision > 0:
            raise ValueError(f"precision must be a positive number of metres, not {precision!r}")
        offset_from, offset_to = _offset_name(crs_from), _offset_name(crs_to)
        if offset_from or offset_to:
            wgs84 = CRS("WGS84")
            if offset_from and offset_to:
                raise ValueError("the offsets GCJ02 and BD09 pair with WGS 84, not with each other")
            other = CRS(crs_to if offset_from else crs_from)
            if other != wgs84:
                raise ValueError(f"{offset_from or offset_to} pairs with WGS 84, not with {other.name!r}")
            name = offset_from or offset_to
            forward = bool(offset_to)
            return cls((_offset, (name, forward, float(precision))), wgs84, wgs84,
                       (_offset, (name, not forward, float(precision))), (offset_from, offset_to))
        source, target = CRS(crs_from), CRS(crs_to)
        return cls((_projection, (source, target)), source, target, (_projection, (target, source)))

    def _transformation(self, points):
        """The native transformation for a batch of ``points``, made once per variant."""
        parallel = points >= PARALLEL_FROM
        made = self._made.get(parallel)
        if made is None:
            with self._making:
                made = self._made.get(parallel)
                if made is None:
                    maker, arguments = self._recipe
                    made = self._made[parallel] = _tuned(maker(*arguments), parallel)
        return made

    def transform(self, xx, yy, zz=None):
        """(x, y) or (x, y, z) transformed, as new float64 arrays of the inputs' shape.

        Takes scalars, lists or arrays of any real dtype, all of one shape;
        scalars give floats. The inputs are never changed. A point that
        cannot be transformed is ``inf`` in every coordinate.
        """
        x, scalar = _coordinates(xx, "xx")
        y, _ = _coordinates(yy, "yy")
        shape = _np.shape(xx)
        if _np.shape(yy) != shape or (zz is not None and _np.shape(zz) != shape):
            raise ValueError(f"xx, yy and zz must have one shape, not {shape}, {_np.shape(yy)}"
                             + ("" if zz is None else f", {_np.shape(zz)}"))
        z = None if zz is None else _coordinates(zz, "zz")[0]
        out = [_np.empty_like(x), _np.empty_like(y)] + ([] if z is None else [_np.empty_like(z)])
        transformed = _np.empty(x.size, dtype=_np.uint8)
        if not _native._transform_with_outcomes(self._transformation(x.size), x, y, z, out[0], out[1],
                                                out[2] if z is not None else None, transformed):
            failed = transformed == 0
            for values in out:
                values[failed] = _np.inf
        if scalar:
            return tuple(float(values[0]) for values in out)
        return tuple(values.reshape(shape) for values in out)

    def transform_inplace(self, points):
        """Transforms an (n, 2) or (n, 3) C-contiguous float64 array in place; True when every
        point succeeded (a failed point keeps what the transformation left in it)."""
        count = _np.shape(points)[0] if _np.ndim(points) else 0
        return self._transformation(count).transform(points)

    def inverse(self):
        """The Transformer back from ``target_crs`` to ``source_crs``."""
        if self._inverse_recipe is None:
            raise ValueError("this transformation has no inverse")
        return Transformer(self._inverse_recipe, self.target_crs, self.source_crs, self._recipe,
                           (self.target_offset, self.source_offset))

    @property
    def transformation(self):
        """The native transformation (an ``LmCoordinateTransformation``) this Transformer applies."""
        return self._transformation(PARALLEL_FROM)

    def _end(self, crs, offset):
        if offset or crs is None:
            return offset or "plane"
        return f"EPSG:{crs.to_epsg()}" if crs.to_epsg() else repr(crs.name)

    def __repr__(self):
        return (f"<Transformer {self._end(self.source_crs, self.source_offset)} -> "
                f"{self._end(self.target_crs, self.target_offset)}>")

    def __reduce__(self):
        return Transformer, (self._recipe, self.source_crs, self.target_crs, self._inverse_recipe,
                             (self.source_offset, self.target_offset))
