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
# has <text> <extended regex>: the text holds a line that matches.
has() { grep -qE "$2" <<<"$1" || { echo "missing: $2"; exit 1; }; }
package() { echo "$work_dir"/cpack/$1_*.deb; }
runtime=$(package 'liblmspatialreference[0-9]*') dev=$(package liblmspatialreference-dev)
runtime_files=$(dpkg-deb -c "$runtime") dev_files=$(dpkg-deb -c "$dev")
has "$runtime_files" 'liblmspatialreference\.so\.[0-9]+ -> '
has "$runtime_files" 'liblmutility\.so\.[0-9]+ -> '
has "$runtime_files" '/coordinatesystem/EPSG\.txt$'
if grep -q '\.so -> ' <<<"$runtime_files"; then echo "the runtime package holds a .so link"; exit 1; fi
has "$dev_files" 'liblmspatialreference\.so -> '
has "$dev_files" '/include/lmspatialreference/lmspatialreference\.h$'
has "$dev_files" '/pkgconfig/lmspatialreference\.pc$'
has "$dev_files" '/LmSpatialReferenceConfig\.cmake$'
# Dependencies on Debian's libraries come from dpkg-shlibdeps; the -dev
# package pins the runtime package's exact version.
has "$(dpkg-deb -f "$runtime" Depends)" 'libgdal[0-9]+ \(>= '
has "$(dpkg-deb -f "$dev" Depends)" '^liblmspatialreference[0-9]+ \(= '

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
  has "$(dpkg-deb -c "$(package python3-lmspatialreference)")" '/dist-packages/lmspatialreference/__init__\.py$'
  (cd / && PYTHONPATH=$(find "$root" -type d -name dist-packages) PYTHONDONTWRITEBYTECODE=1 "$python" - "$root" <<'PY'
import sys
import lmspatialreference as lm
assert lm.__file__.startswith(sys.argv[1]), lm.__file__
assert lm.LmSpatialReference(4547).epsg == 4547
print("python: imported from the unpacked root, EPSG 4547 ok")
PY
  )
fi
