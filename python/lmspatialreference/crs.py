"""``CRS``: a coordinate reference system in the manner of ``pyproj.CRS``."""

import numbers as _numbers
import os as _os
import re as _re

from . import _lmspatialreference as _native

_WELL_KNOWN = {"WGS84": _native.eWGS84, "WGS 84": _native.eWGS84, "CGCS2000": _native.eCGCS2000,
               "WEBMERCATOR": _native.eWebMercator}
# Names of the China offsets: not reference systems of their own, so only a
# Transformer takes them.
OFFSET_NAMES = ("GCJ02", "BD09")
_EPSG = _re.compile(r"^\s*EPSG\s*:\s*(\d+)\s*$", _re.IGNORECASE)


def _usable(reference, given):
    if reference.is_null or not (reference.is_geographic or reference.is_projected or reference.is_local_cs):
        raise ValueError(f"not a coordinate reference system: {given!r}")
    return reference


def _from_code(code):
    if code <= 0:
        raise ValueError(f"EPSG codes are positive, not {code}")
    return _usable(_native.LmSpatialReference(int(code)), f"EPSG:{code}")


def _from_text(text):
    stripped = text.strip()
    key = stripped.upper()
    if key in _WELL_KNOWN:
        return _native.LmSpatialReference(_WELL_KNOWN[key])
    if key in OFFSET_NAMES:
        raise ValueError(f"{stripped} is an offset of WGS 84, not a reference system: "
                         "use Transformer.from_crs or geo.to_crs with it")
    match = _EPSG.match(stripped)
    if match:
        return _from_code(int(match.group(1)))
    if stripped.startswith("+") or "+proj=" in stripped:
        return _usable(_native.LmSpatialReference(stripped, _native.eProj4), text)
    if stripped.lower().endswith(".prj") and _os.path.isfile(stripped):
        with open(stripped, encoding="utf-8", errors="replace") as prj:
            return _usable(_native.LmSpatialReference(prj.read().strip(), _native.eAutoDetect), text)
    if "[" in stripped:
        return _usable(_native.LmSpatialReference(stripped, _native.eWKT), text)
    raise ValueError(f"not a coordinate reference system: {text!r}")


def _reference(value):
    if isinstance(value, CRS):
        return value.reference
    if isinstance(value, _native.LmSpatialReference):
        return _usable(value, value)
    if isinstance(value, bool):
        raise TypeError("a CRS cannot be made from a bool")
    if isinstance(value, _numbers.Integral):
        return _from_code(int(value))
    if isinstance(value, str):
        return _from_text(value)
    if isinstance(value, _os.PathLike):
        return _from_text(_os.fspath(value))
    if hasattr(value, "to_wkt") and hasattr(value, "to_epsg"):  # a pyproj CRS, as GeoPandas holds
        code = value.to_epsg()
        return _from_code(code) if code else _from_text(value.to_wkt())
    raise TypeError(f"a CRS is made from an EPSG code, a text or a path, not {type(value).__name__}")


def _of_reference(attribute, doc):
    """A read-only property answered by the reference behind the CRS."""
    return property(lambda self: getattr(self._ref, attribute), doc=doc)


class CRS:
    """A coordinate reference system.

    Made from an int EPSG code, "EPSG:4547", WKT, a PROJ.4 string, the path of
    a ``.prj`` file, one of the built-in names "WGS84", "CGCS2000" and
    "WebMercator", a pyproj CRS, an ``LmSpatialReference`` or another CRS.
    Anything else is a TypeError; a text or code that names no reference
    system a ValueError. Two CRSs are equal when the library finds them the
    same (``LmSpatialReference.is_same``).
    """

    __slots__ = ("_ref",)

    def __init__(self, value):
        self._ref = _reference(value)

    @classmethod
    def from_epsg(cls, code):
        if isinstance(code, bool) or not isinstance(code, _numbers.Integral):
            raise TypeError(f"EPSG codes are ints, not {type(code).__name__}")
        return cls(int(code))

    @classmethod
    def from_wkt(cls, text):
        if not isinstance(text, str):
            raise TypeError("WKT is a str")
        return cls(_usable(_native.LmSpatialReference(text, _native.eWKT), text))

    @classmethod
    def from_proj4(cls, text):
        if not isinstance(text, str):
            raise TypeError("a PROJ.4 definition is a str")
        return cls(_usable(_native.LmSpatialReference(text, _native.eProj4), text))

    @classmethod
    def from_user_input(cls, value):
        return value if isinstance(value, cls) else cls(value)

    @property
    def reference(self):
        """The ``LmSpatialReference`` behind this CRS."""
        return self._ref

    name = _of_reference("name", "The reference's name.")
    is_geographic = _of_reference("is_geographic", "True for longitude and latitude.")
    is_projected = _of_reference("is_projected", "True for a map projection.")
    ellipsoid = _of_reference("ellipsoid", "The ellipsoid's name.")

    def to_epsg(self):
        """The EPSG code the reference carries or that the library's table gives, else None."""
        return self._ref.epsg or None

    def find_epsg(self):
        """The EPSG code the text means, judged by its numbers and then its names, else None.

        Unlike to_epsg(), which answers the first code with the same numbers, this tells
        NAD83 / UTM 18N from REGVEN / UTM 18N and never answers a northing-first twin for
        an easting-first text."""
        return self._ref.find_epsg() or None

    def epsg_candidates(self):
        """Every EPSG code whose numbers agree, best first: (code, confidence, name)."""
        return self._ref.epsg_candidates()

    def to_wkt(self, pretty=False):
        return self._ref.export_to_wkt(bool(pretty))

    def to_proj4(self):
        return self._ref.export_to_proj4()

    def __eq__(self, other):
        if not isinstance(other, CRS):
            try:
                other = CRS(other)
            except (TypeError, ValueError):
                return NotImplemented
        return self._ref.is_same(other._ref)

    # Equal references can differ in every text the library exports, so only
    # their kind enters the hash.
    def __hash__(self):
        return hash((self.is_geographic, self.is_projected))

    def __repr__(self):
        code = self.to_epsg()
        return f"<CRS {'EPSG:%d ' % code if code else ''}name={self.name!r}>"

    def __reduce__(self):
        return CRS, (self._ref,)
