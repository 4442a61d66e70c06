"""Spatial reference queries and geodesics, against published constants and closed forms."""
import math

import numpy as np
import pytest

import lmspatialreference as lm

UTM50 = "+proj=utm +zone=50 +datum=WGS84 +units=m +no_defs"

# (definition, geographic, projected, a, 1/f, units)
REFERENCES = [
    ((lm.eWGS84,), True, False, 6378137.0, 298.257223563, lm.eDegree),
    ((lm.eCGCS2000,), True, False, 6378137.0, 298.257222101, lm.eDegree),
    ((lm.eWebMercator,), False, True, 6378137.0, 298.257223563, lm.eMeter),
    ((UTM50, lm.eProj4), False, True, 6378137.0, 298.257223563, lm.eMeter),
    (("+proj=longlat +ellps=intl +no_defs", lm.eProj4), True, False, 6378388.0, 297.0, lm.eDegree),
]


# (EPSG code, geographic, name, a, 1/f): the EPSG register's own figures.
EPSG_CODES = [
    (4326, True, "WGS 84", 6378137.0, 298.257223563),
    (4490, True, "China Geodetic Coordinate System 2000", 6378137.0, 298.257222101),
    (32650, False, "WGS 84 / UTM zone 50N", 6378137.0, 298.257223563),
    (4214, True, "Beijing 1954", 6378245.0, 298.3),
    (3857, False, "WGS 84 / Pseudo-Mercator", 6378137.0, 298.257223563),
]


@pytest.mark.parametrize("code,geographic,name,a,invf", EPSG_CODES)
def test_references_by_epsg_code(code, geographic, name, a, invf):
    r = lm.LmSpatialReference(code)
    assert (r.is_null, r.is_geographic, r.is_projected, r.name, r.epsg) == (False, geographic, not geographic, name, code)
    assert r.equatorial_radius_a == a and r.flatten_inverse_f == pytest.approx(invf, abs=1e-9)


@pytest.mark.parametrize("make,code", [(lambda: lm.LmSpatialReference(lm.eWGS84), 4326),
                                       (lambda: lm.LmSpatialReference(UTM50, lm.eProj4), 32650),
                                       (lambda: lm.LmSpatialReference(999999), 0),
                                       (lambda: lm.LmSpatialReference(-1), 0),
                                       (lambda: lm.LmSpatialReference("", lm.eWKT), 0)])
def test_epsg_of_other_references(make, code):
    assert make().epsg == code


def legacy_record(changes=None):
    # A Beijing 1954 Gauss-Kruger record for 6-degree zone 20 (central meridian
    # 117 E) on the Krassowsky ellipsoid, as 288 comma-separated fields.
    fields = ["0"] * 288
    for i, v in {1: "Beijing1954", 2: "6378.245", 4: "298.3", 6: "11", 7: "Beijing1954_GK_20", 9: "20",
                 11: "500", 13: "117", 27: "1", **(changes or {})}.items():
        fields[i] = v
    return ",".join(fields)


def meridian_arc(a, invf, lat, n=1000):
    # Simpson's rule over the meridian radius of curvature.
    e2 = (2 - 1 / invf) / invf
    phi = np.linspace(0, math.radians(lat), n + 1)
    m = a * (1 - e2) / (1 - e2 * np.sin(phi) ** 2) ** 1.5
    return (m[0] + m[-1] + 4 * m[1:-1:2].sum() + 2 * m[2:-1:2].sum()) * phi[-1] / n / 3


@pytest.mark.parametrize("form", [lm.eLegacyParameters, lm.eAutoDetect])
def test_legacy_parameter_text(form):
    gk = lm.LmSpatialReference(legacy_record(), form)
    assert gk.is_projected and gk.name == "Beijing1954_GK_20" and gk.equatorial_radius_a == 6378245.0
    assert gk.export_to_wkt().startswith('PROJCS["Beijing1954_GK_20"')
    # On the central meridian the easting is the zone-prefixed false easting and
    # the northing the meridian arc.
    x, y = lm.LmProjectCoordinateTransformation(gk.geographic(), gk).transform_point(117.0, 30.0)
    assert x == pytest.approx(20500000.0, abs=1e-6) and y == pytest.approx(meridian_arc(6378245.0, 298.3, 30), abs=1e-3)


@pytest.mark.parametrize("text", [legacy_record()[:-2], "GEOGCS[\"x\"]", ""])
def test_texts_that_are_not_legacy_records(text):
    assert lm.LmSpatialReference(text, lm.eLegacyParameters).is_null


@pytest.mark.parametrize("text,form", [("<xml", lm.eXML), ("+proj=nonsense", lm.eProj4)])
def test_refused_xml_and_proj4_give_empty_non_null_references(text, form):
    # GDAL refuses both texts, but these two forms keep the empty OGR object.
    r = lm.LmSpatialReference(text, form)
    assert not r.is_null and not (r.is_geographic or r.is_projected) and r.export_to_wkt() == "" and r.epsg == 0


@pytest.mark.parametrize("args,geographic,projected,a,invf,units", REFERENCES)
def test_queries(args, geographic, projected, a, invf, units):
    r = lm.LmSpatialReference(*args)
    assert (r.is_null, r.is_geographic, r.is_projected, r.units) == (False, geographic, projected, units)
    assert r.equatorial_radius_a == a and r.flatten_inverse_f == pytest.approx(invf, abs=1e-9)
    assert r.polar_radius_b == pytest.approx(a * (1 - 1 / invf), abs=1e-6)
    assert r.geographic().is_geographic
    assert (r.geographic() is r) == geographic


def test_texts_round_trip_and_compare():
    utm = lm.LmSpatialReference(UTM50, lm.eProj4)
    assert "Transverse" in utm.projection
    for text, form in [(utm.export_to_wkt(), lm.eWKT), (utm.export_to_wkt(True), lm.eWKT),
                       (utm.export_to_xml(), lm.eXML), (utm.export_to_proj4(), lm.eProj4)]:
        assert lm.LmSpatialReference(text, form).is_same(utm), form
    assert utm.clone().is_same_parameter(utm)
    wgs84 = lm.LmSpatialReference(lm.eWGS84)
    assert utm.geographic().is_same_geog_cs(wgs84)
    assert not utm.is_same(wgs84) and not utm.is_same(None)


@pytest.mark.parametrize("text,form", [("", lm.eWKT), ("PROJCS[", lm.eWKT), ("", lm.eProj4),
                                       ("", lm.eXML)])
def test_unreadable_definitions_give_null_references(text, form):
    r = lm.LmSpatialReference(text, form)
    assert r.is_null and r.export_to_wkt() == "" and r.equatorial_radius_a == 0.0 and r.geographic() is None


def test_geodesics_on_the_unit_sphere():
    g = lm.LmGeodesic(1.0, 0.0)
    s, azi1, azi2 = g.inverse(0, 0, 90, 0)
    assert (s, azi1, azi2) == pytest.approx((math.pi / 2, 90, 90))
    assert g.direct(0, 0, 0, math.pi / 4) == pytest.approx((0, 45, 0))
    assert g.interpolation(0, 0, 90, 0, 0.5)[:2] == pytest.approx((45, 0))
    legs = np.array([[0.0, 0.0, 7.0], [0.0, 90.0, 7.0], [90.0, 0.0, 7.0]])
    assert g.compute_geodesic(legs) == pytest.approx(math.pi)
    octant = lm.LmGeodesicPolygon(1.0, 0.0)
    for x, y in [(0, 0), (90, 0), (0, 90)]:
        octant.add_point(x, y)
    count, area, perimeter = octant.compute()
    assert count == 3 and abs(area) == pytest.approx(math.pi / 2) and perimeter == pytest.approx(1.5 * math.pi)
    line = lm.LmGeodesicLine(1.0, 0.0, 0, 0, 90)
    assert line.position(math.pi / 2) == pytest.approx((90, 0))


def test_geodesic_of_a_reference_and_of_none():
    wgs84 = lm.LmSpatialReference(lm.eWGS84)
    # One degree of longitude on the WGS 84 equator is a * pi / 180.
    assert lm.LmGeodesic(wgs84).inverse(0, 0, 1, 0)[0] == pytest.approx(6378137.0 * math.pi / 180)
    assert lm.LmGeodesic(None).inverse(0, 0, 1, 0)[0] == 0.0
    with pytest.raises(TypeError):
        lm.LmGeodesic(1.0, 0.0).compute_geodesic([[0.0, 0.0], [1.0, 1.0]])
