#!/usr/bin/env bash
# Makes the Debian packages from a built tree, checks them with lintian (errors
# fail, warnings are listed in the README), unpacks them into a scratch root
# with dpkg-deb -x and uses the library from there: a consumer built through
# pkg-config and through the CMake package, and the Python module imported from
# another folder. python is "none" when the build has no Python module.
set -euo pipefail
build_dir=$1 consumer_dir=$2 work_dir=$3 python=$4
root=$work_dir/root

rm -rf "$work_dir"
mkdir -p "$work_dir" "$root"
cpack --config "$build_dir/CPackConfig.cmake" -B "$work_dir/cpack" >/dev/null
debs=("$work_dir"/cpack/*.deb)

echo "== lintian"
lintian --fail-on error "${debs[@]}" 2>/dev/null || { echo "lintian found errors"; exit 1; }

echo "== contents"
contents() { dpkg-deb -c "$work_dir"/cpack/"$1"_*.deb; }
runtime=$(contents liblmspatialreference1) dev=$(contents liblmspatialreference-dev)
grep -q 'liblmspatialreference\.so\.1 -> ' <<<"$runtime"
grep -q 'liblmutility\.so\.1 -> ' <<<"$runtime"
grep -q '/coordinatesystem/EPSG\.txt$' <<<"$runtime"
if grep -q 'liblmspatialreference\.so -> ' <<<"$runtime"; then echo "runtime package holds the .so link"; exit 1; fi
grep -q 'liblmspatialreference\.so -> ' <<<"$dev"
grep -q '/include/lmspatialreference/lmspatialreference\.h$' <<<"$dev"
grep -q '/pkgconfig/lmspatialreference\.pc$' <<<"$dev"
grep -q '/LmSpatialReferenceConfig\.cmake$' <<<"$dev"
# Dependencies come from dpkg-shlibdeps, those between the packages pin the version.
dpkg-deb -f "$work_dir"/cpack/liblmspatialreference1_*.deb Depends | grep -q 'libgdal[0-9]* (>='
dpkg-deb -f "$work_dir"/cpack/liblmspatialreference-dev_*.deb Depends | grep -q '^liblmspatialreference1 (= '

for deb in "${debs[@]}"; do dpkg-deb -x "$deb" "$root"; done
pc_file=$(find "$root" -name lmspatialreference.pc)
libdir=$(dirname "$(dirname "$pc_file")")

echo "== pkg-config"
# The .pc file finds its prefix from its own folder, so it points into the root.
export PKG_CONFIG_PATH=${pc_file%/*}
# shellcheck disable=SC2046
g++ -std=c++17 "$consumer_dir/main.cpp" -o "$work_dir/consumer-pc" $(pkg-config --cflags --libs lmspatialreference)
# The loader reaches the library through a linked folder, as merged-/usr
# systems reach /usr/lib through /lib: the data folder must still be found
# from where the library really lies.
ln -s "$libdir" "$work_dir/linked-lib"
(cd / && LD_LIBRARY_PATH=$work_dir/linked-lib "$work_dir/consumer-pc")

echo "== CMake package"
cmake -S "$consumer_dir" -B "$work_dir/cmake-build" -DCMAKE_PREFIX_PATH="$root/usr" >/dev/null
cmake --build "$work_dir/cmake-build" >/dev/null
(cd / && "$work_dir/cmake-build/consumer")

if [ "$python" != none ]; then
  echo "== Python"
  grep -q '/dist-packages/lmspatialreference/__init__\.py$' <<<"$(contents python3-lmspatialreference)"
  (cd / && PYTHONPATH=$(find "$root" -type d -name dist-packages) PYTHONDONTWRITEBYTECODE=1 "$python" - "$root" <<'PY'
import sys
import lmspatialreference as lm
assert lm.__file__.startswith(sys.argv[1]), lm.__file__
assert lm.LmSpatialReference(4547).epsg == 4547
print("python: imported from the unpacked root, EPSG 4547 ok")
PY
  )
fi
