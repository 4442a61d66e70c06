"""The Dask helper and the distributed example, on a small array."""
import numpy as np
import pytest

import lmspatialreference as lm
import lmspatialreference.dask as lmdask

da = pytest.importorskip("dask.array")


def test_distributed_example_equals_in_process():
    import dask_transform
    result, expected, _ = dask_transform.run(points=40_000, workers=2, chunk=10_000)
    assert np.array_equal(result, expected)


def test_local_chunks_split_across_columns():
    points = np.column_stack([np.linspace(-170, 170, 1000), np.linspace(-60, 60, 1000), np.ones(1000)])
    chunked = da.from_array(points, chunks=(300, 1))
    forward = lm.LmWGS84ToBD09CoordinateTransformation()
    expected = points.copy()
    forward.transform(expected)
    assert np.array_equal(lmdask.transform(chunked, forward).compute(scheduler="threads"), expected)
    assert np.array_equal(points[:, 2], np.ones(1000))  # the source array is left alone


@pytest.mark.parametrize("points,error", [(np.ones((10, 2), dtype=np.float32), TypeError),
                                          (np.ones((10, 4)), ValueError), (np.ones(10), ValueError)])
def test_checks(points, error):
    with pytest.raises(error):
        lmdask.transform(da.from_array(points), lm.LmWGS84ToGCJ02CoordinateTransformation())
