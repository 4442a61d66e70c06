"""The facade's examples run and keep their promises."""
import numpy as np
import pytest


def test_gcj02_layer_round_trip():
    import gcj02_layer
    layer, on_web_map, back, error = gcj02_layer.run(precision=0.0001)
    assert on_web_map.attrs == {"lmspatialreference_offset": "GCJ02"} and error < 1e-8


def test_bursa_from_csv():
    import bursa_from_csv
    fit, layer, surveyed = bursa_from_csv.run()
    # The control points carry centimetre survey noise.
    assert fit.mean_error < 0.05 and fit.residuals.shape == (8, 3)
    assert surveyed.crs == "EPSG:4547" and surveyed.geometry.iloc[0].has_z


def test_dask_transformer():
    pytest.importorskip("dask.array")
    import dask_transformer
    result, expected = dask_transformer.run(points=60_000, chunk=25_000)
    assert np.array_equal(result, expected)
