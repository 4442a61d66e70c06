#!/usr/bin/env bash
# Installs the build into a scratch prefix and imports the module from there,
# away from the build tree, as a user following the README does.
set -euo pipefail
python=$1 build_dir=$2 package_dir=$3 work_dir=$4
prefix=$work_dir/prefix

rm -rf "$work_dir"
cmake --install "$build_dir" --prefix "$prefix" >/dev/null
cd "$work_dir"
PYTHONPATH=$prefix/$package_dir "$python" - "$prefix" <<'PY'
import os, sys
import numpy as np
import lmspatialreference as lm
import lmspatialreference.dask
assert lm.__file__.startswith(sys.argv[1]), lm.__file__
points = np.array([[116.391, 39.907]])
ok = lm.LmProjectCoordinateTransformation(lm.LmSpatialReference(lm.eWGS84),
                                          lm.LmSpatialReference(lm.eWebMercator)).transform(points)
assert ok and abs(points[0, 0] - 12956586.8529) < 1e-3, points
print("imported from", os.path.dirname(lm.__file__))
PY
