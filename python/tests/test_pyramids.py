"""Tile pyramids: tile arithmetic against the XYZ formula and hand-worked cases, the XML form, sub-pyramids."""
import math
import pickle

import numpy as np
import pytest

import lmspatialreference as lm

R = 20037508.342789199  # the Web Mercator half-width


def web():
    return lm.LmPyramid.wellknown_pyramid(lm.eWebMercatorPyramid)


def test_stock_pyramids():
    geo, mercator = lm.LmPyramid(), web()
    assert type(mercator) is lm.LmMultiPyramid and mercator.specials == []
    assert type(lm.LmPyramid.wellknown_pyramid(lm.eGeographicPyramid)) is lm.LmMultiPyramid
    assert (geo.name, geo.description, geo.pyramid_id) == ("360度", "金字塔方案", "Pyramid0001")
    assert (geo.top_level_index, geo.bottom_level_index, geo.scale_x, geo.tile_size_x, geo.tile_size_y) == (0, 20, 2, 256, 256)
    assert (geo.from_x, geo.from_y, geo.to_x, geo.to_y) == (-180, 90, 180, -270)
    assert (geo.x_min, geo.y_min, geo.x_max, geo.y_max, geo.pi, geo.tolerance) == (-180, -90, 180, 90, math.pi, 2.0 ** -23)
    assert (mercator.from_x, mercator.from_y, mercator.to_x, mercator.to_y) == (-R, R, R, -R)
    for p in (geo, mercator):
        assert (p.direction_x(4), p.direction_y(4)) == (1, -1)


def test_web_mercator_matches_the_xyz_formula():
    rng = np.random.default_rng(6)
    p = web()
    for z in (0, 1, 7, 15, 20):
        for x, y in rng.uniform(-R, R, (50, 2)):
            # Tiles and pixels counted from the north-west corner; pixel_y is one-based from the south edge.
            gx, gy = (x + R) / (2 * R) * 256 * 2 ** z, (R - y) / (2 * R) * 256 * 2 ** z
            expected = (int(gy // 256), int(gx // 256), int(gx % 256), 256 - int(gy % 256))
            assert p.tile_index(z, x, y) == expected
            xmin, ymin, xmax, ymax = p.tile_extent(z, *expected[:2])
            assert xmax - xmin == pytest.approx(2 * R / 2 ** z) and xmin <= x <= xmax and ymin <= y <= ymax


@pytest.mark.parametrize("pyramid,level,x,y,expected", [
    (web, 1, 1, -1, (1, 1)),
    (web, 1, -R, R, (0, 0, 0, 256)),             # the starting corner itself
    (web, 3, R, -R, (8, 8)),                     # the far edges start the next column and row
    (lm.LmPyramid, 0, 0, 0, (0, 0)),
    (lm.LmPyramid, 2, 90, 0, (1, 3, 0, 256)),    # 90 degrees a tile
    (lm.LmPyramid, 2, -200, 100, (-1, -1)),      # outside the top tile: same formulas
])
def test_tile_index(pyramid, level, x, y, expected):
    assert pyramid().tile_index(level, x, y)[:len(expected)] == expected


def test_tile_extents_and_ranges():
    geo = lm.LmPyramid()
    assert geo.tile_extent(0, 0, 0) == (-180, -270, 180, 90)
    extent = geo.tile_extent(5, 7, 11)
    assert geo.tile_index_range(*extent, 5) == (7, 11, 7, 11)
    assert geo.tile_extent_range(5, 7, 11, 9, 12) == geo.tile_extent_range(5, 9, 12, 7, 11) == (
        extent[0], geo.tile_extent(5, 9, 12)[1], geo.tile_extent(5, 9, 12)[2], extent[3])
    assert web().device_position((0, 512, 0, 512), 1, 0, 1) == (0, 256, 256, 512)
    assert (geo.tile_span_x(3), geo.tile_span_y(3)) == (45.0, -45.0)


GEO5 = 360 / 256 / 2 ** 5  # the geographic level-5 pixel, exact in binary


@pytest.mark.parametrize("pyramid,resolution,best,precise", [
    (web, 2 * R / 256 / 2 ** 5, 5, 5.0),
    (lm.LmPyramid, 1.5 * GEO5, 4, 4 + math.log2(2 / 1.5)),  # exactly between levels 4 and 5: the coarser
    (web, 1e12, 0, 0.0),
    (web, -1.0, 20, 20.0),
    (web, 1e-6, 20, 20.0),
])
def test_levels_for_a_resolution(pyramid, resolution, best, precise):
    p = pyramid()
    assert p.best_level(resolution) == best and p.precise_level(resolution) == pytest.approx(precise)


def test_xml_form():
    p = web()
    assert not p.from_string("<pyramid/>") and not p.from_string("<Pyramid") and p.from_x == -R
    assert p.from_string("<Pyramid/>") and p.from_x == -180 and p.name == "360度"
    text = web().to_string()
    assert [line.strip().split()[0] for line in text.splitlines()[1:7]] == [
        "<Basic", "<Level", "<TileBasic", "<TopTile", "<Const", "<Range"]
    assert lm.LmPyramid(text).to_string() == text
    assert lm.LmPyramid('<Pyramid><Level ScaleX="1.5"/></Pyramid>').scale_x == 1.0
    assert lm.LmPyramid("not xml").from_x == -180


def test_sub_pyramids():
    multi = web()
    sub = lm.LmPyramid()
    sub.top_level_index, sub.bottom_level_index = 10, 15
    multi.specials = [sub]
    assert multi.tile_extent(12, 0, 0) == sub.tile_extent(12, 0, 0)
    assert multi.tile_extent(9, 0, 0) == web().tile_extent(9, 0, 0) and multi.find_pyramid(9) is None
    multi.specials = [sub, lm.LmPyramid()]
    assert multi.find_pyramid(12).top_level_index == 10 and multi.find_pyramid(16).top_level_index == 0
    copy = lm.LmMultiPyramid(multi.to_string())
    assert [s.top_level_index for s in copy.specials] == [10, 0] and "<Specials>" in multi.to_string()
    with pytest.raises(TypeError):
        multi.specials = [None]


@pytest.mark.parametrize("make", [lm.LmPyramid, web])
def test_pickle_keeps_fractional_scales(make):
    p = make()
    p.scale_x = 2.5
    if isinstance(p, lm.LmMultiPyramid):
        sub = lm.LmPyramid()
        sub.scale_y = 1.5
        p.specials = [sub]
    copy = pickle.loads(pickle.dumps(p))
    assert type(copy) is type(p) and copy.to_string() == p.to_string() and copy.scale_x == 2.5
    assert [s.scale_y for s in getattr(copy, "specials", [])] == [s.scale_y for s in getattr(p, "specials", [])]
