#!/usr/bin/env bash
# Sets up a Debian 12 machine, builds the library and runs the demo program.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup-debian.sh
cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build build -j"$(nproc)" --target lmdemo
./build/bin/lmdemo
