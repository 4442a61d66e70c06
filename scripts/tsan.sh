#!/usr/bin/env bash
# Runs the test suite under ThreadSanitizer.
#
# Debian's libgomp is not instrumented, so TSan cannot see the barrier that
# ends a parallel region and reports every read after it as a race. This run
# therefore builds with clang and LLVM's OpenMP runtime, whose Archer tool tells
# TSan about OpenMP's synchronisation. Extra arguments go to ctest, e.g.
# `bash scripts/tsan.sh -R Parallel`.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup-debian.sh clang-14 libomp-14-dev

build=build-tsan
CC=clang-14 CXX=clang++-14 cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DLM_SANITIZE=thread \
  -DLM_BUILD_BENCHMARKS=OFF -DLM_BUILD_EXAMPLES=OFF >/dev/null
cmake --build "$build" -j"$(nproc)"

export OMP_TOOL_LIBRARIES=/usr/lib/llvm-14/lib/libarcher.so
export TSAN_OPTIONS="halt_on_error=1 ignore_noninstrumented_modules=1"
ctest --test-dir "$build" --output-on-failure "$@"
