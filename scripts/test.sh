#!/usr/bin/env bash
# Sets up a Debian 12 machine, builds everything and runs the whole test suite.
# LM_SANITIZE=address,undefined (or thread) builds and tests a sanitized copy.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup-debian.sh

build=build${LM_SANITIZE:+-${LM_SANITIZE//,/-}}
cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DLM_SANITIZE="${LM_SANITIZE:-}" >/dev/null
cmake --build "$build" -j"$(nproc)"
ctest --test-dir "$build" --output-on-failure -j"$(nproc)"
