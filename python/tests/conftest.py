import math
import os
import sys

import numpy as np
import pytest

import lmspatialreference as lm

EXAMPLES = os.path.join(os.path.dirname(__file__), "..", "examples")
sys.path.insert(0, os.path.abspath(EXAMPLES))

WEB_MERCATOR_RADIUS = 6378137.0


def web_mercator(lonlat):
    """Spherical Mercator in closed form, independent of GDAL."""
    lon, lat = np.radians(lonlat[:, 0]), np.radians(lonlat[:, 1])
    return np.column_stack([WEB_MERCATOR_RADIUS * lon,
                            WEB_MERCATOR_RADIUS * np.log(np.tan(math.pi / 4 + lat / 2))])


@pytest.fixture
def wgs84():
    return lm.LmSpatialReference(lm.eWGS84)


@pytest.fixture
def mercator():
    return lm.LmSpatialReference(lm.eWebMercator)


@pytest.fixture
def projection(wgs84, mercator):
    return lm.LmProjectCoordinateTransformation(wgs84, mercator)
