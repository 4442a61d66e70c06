#!/usr/bin/env bash
# Sets up a Debian 12 machine, builds the library in Release for /usr and writes
# its Debian packages to dist/: liblmspatialreference1 (the shared libraries and
# the data folder), liblmspatialreference-dev (headers, CMake package,
# pkg-config file, .so links) and python3-lmspatialreference (the module).
# Install them with `apt-get install ./dist/*.deb`.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup-debian.sh

# Debian keeps architecture-independent data under /usr/share; the libraries
# go to /usr/lib/<multiarch>, which GNUInstallDirs picks for the /usr prefix.
build=build-package
cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX=/usr \
  -DLM_DATA_INSTALL_DIR=share/lmspatialreference -DLM_BUILD_PYTHON=ON \
  -DLM_BUILD_TESTS=OFF -DLM_BUILD_BENCHMARKS=OFF -DLM_BUILD_EXAMPLES=OFF >/dev/null
cmake --build "$build" -j"$(nproc)"
rm -rf "$build/packages"
cpack --config "$build/CPackConfig.cmake" -B "$build/packages"
mkdir -p dist
rm -f dist/*.deb
cp "$build"/packages/*.deb dist/
ls dist/*.deb
