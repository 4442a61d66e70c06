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
