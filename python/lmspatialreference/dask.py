"""Transformations over chunked Dask arrays of points.

``transform(array, transformation)`` maps a transformation over a
``dask.array`` of float64 points of shape (n, 2) or (n, 3) with
``map_blocks``. The transformation travels to the workers pickled by its
definition and is rebuilt there, so the result equals the in-process
transformation bit for bit::

    from dask.distributed import Client, LocalCluster
    import dask.array as da
    import lmspatialreference as lm
    import lmspatialreference.dask as lmdask

    projection = lm.Transformer.from_crs("WGS84", "WebMercator")
    with LocalCluster(n_workers=2, threads_per_worker=1) as cluster, Client(cluster):
        points = da.random.uniform(-80, 80, size=(10_000_000, 2), chunks=(1_000_000, 2))
        projected = lmdask.transform(points, projection).compute()
"""

import numpy as _np

from .transformer import Transformer


def _transform_block(block, transformation, reverse):
    if isinstance(transformation, Transformer):
        # New arrays, with inf for the points that cannot be transformed.
        return _np.column_stack(transformation.transform(*_np.asarray(block, dtype=_np.float64).T))
    # Blocks handed to map_blocks may be views of the caller's data, so the
    # transformation works on a private contiguous copy.
    points = _np.array(block, dtype=_np.float64, order="C", copy=True)
    if reverse:
        transformation.reverse_transform(points)
    else:
        transformation.transform(points)
    return points


def transform(array, transformation, reverse=False):
    """A lazy dask array of the points of ``array`` transformed by ``transformation``.

    ``array`` is a dask array (or anything ``dask.array.asarray`` accepts) of
    float64 with shape (n, 2) or (n, 3), chunked along the first axis; chunks
    that split a point are merged first. ``reverse`` applies the reverse
    transformation. A point that cannot be transformed is left as the
    transformation leaves it, as in ``transformation.transform``. A
    ``Transformer`` may stand for the transformation: its points that cannot
    be transformed come back as ``inf``, and ``reverse`` uses its inverse.
    """
    import dask.array as da

    if reverse and isinstance(transformation, Transformer):
        transformation, reverse = transformation.inverse(), False
    array = da.asarray(array)
    if array.dtype != _np.float64:
        raise TypeError(f"points must have dtype float64, not {array.dtype}")
    if array.ndim != 2 or array.shape[1] not in (2, 3):
        raise ValueError(f"points must have shape (n, 2) or (n, 3), not {array.shape}")
    if array.numblocks[1] != 1:
        array = array.rechunk({1: -1})
    return array.map_blocks(_transform_block, transformation, reverse, dtype=_np.float64,
                            meta=_np.empty((0, array.shape[1]), dtype=_np.float64))
