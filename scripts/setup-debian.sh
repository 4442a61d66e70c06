#!/usr/bin/env bash
# Installs the Debian 12 packages needed to build, test and benchmark the library.
# Idempotent and silent when everything is already present; runs as root or through sudo.
# Further package names given as arguments are installed too.
set -euo pipefail

packages=(
  cmake g++ make pkg-config
  libgdal-dev libproj-dev libtinyxml2-dev libsqlite3-dev
  libgtest-dev libbenchmark-dev
  # The Python module, its tests and the API reference.
  python3-dev pybind11-dev python3-numpy python3-pytest python3-dask python3-distributed doxygen
  # The Python facade's GeoPandas support and the pyproj oracle it is tested against.
  python3-pyproj python3-geopandas python3-shapely
  # Debian packages of the library.
  dpkg-dev lintian
  "$@"
)

missing=()
for package in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed'; then
    missing+=("$package")
  fi
done
[ ${#missing[@]} -eq 0 ] && exit 0

as_root=()
[ "$(id -u)" -eq 0 ] || as_root=(sudo)

echo "Installing: ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
"${as_root[@]}" apt-get update -qq
"${as_root[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
