#!/usr/bin/env bash
# Installs the built library into a scratch prefix, then builds and runs a small
# consumer against it twice: through the CMake package and through pkg-config.
set -euo pipefail
build_dir=$1 consumer_dir=$2 work_dir=$3
prefix=$work_dir/prefix

rm -rf "$work_dir"
cmake --install "$build_dir" --prefix "$prefix" >/dev/null

echo "== CMake package"
cmake -S "$consumer_dir" -B "$work_dir/cmake-build" -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
cmake --build "$work_dir/cmake-build" >/dev/null
"$work_dir/cmake-build/consumer"
"$work_dir/cmake-build/units_only"

echo "== pkg-config"
pc_dir=$(dirname "$(find "$prefix" -name lmspatialreference.pc)")
export PKG_CONFIG_PATH=$pc_dir
libdir=$(pkg-config --variable=libdir lmspatialreference)
# shellcheck disable=SC2046
g++ -std=c++17 "$consumer_dir/main.cpp" -o "$work_dir/consumer-pc" \
    $(pkg-config --cflags --libs lmspatialreference) -Wl,-rpath,"$libdir"
"$work_dir/consumer-pc"
# Linked as-needed, the program keeps the library only for the symbols it uses.
# shellcheck disable=SC2046
g++ -std=c++17 "$consumer_dir/units_only.cpp" -o "$work_dir/units-only-pc" -Wl,--as-needed \
    $(pkg-config --cflags --libs lmspatialreference) -Wl,-rpath,"$libdir"
"$work_dir/units-only-pc"

echo "== installed layout"
test -L "$libdir/liblmspatialreference.so"
readelf -d "$libdir/liblmspatialreference.so" | grep -q 'SONAME.*liblmspatialreference\.so\.[0-9]'
test -f "$prefix/include/lmspatialreference/lmspatialreference.h"
test -s "$libdir/../data/coordinatesystem/EPSG.txt"
test -s "$libdir/../data/coordinatesystem/EPSG_Alias.txt"
