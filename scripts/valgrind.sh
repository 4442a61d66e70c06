#!/usr/bin/env bash
# Runs every test program of the suite under valgrind's memcheck and fails on
# any definitely or indirectly lost block or memory error. Not part of CI: it
# takes several minutes. Usage: bash scripts/valgrind.sh [gtest filter]
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup-debian.sh valgrind

build=build-valgrind
cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DLM_SANITIZE= \
  -DLM_BUILD_BENCHMARKS=OFF -DLM_BUILD_EXAMPLES=OFF >/dev/null
cmake --build "$build" -j"$(nproc)" >/dev/null

# One thread per parallel region keeps memcheck's serialised run short; the
# thread paths are covered by the ThreadSanitizer build instead.
export OMP_NUM_THREADS=1
failed=0
for program in "$build"/bin/test_*; do
  log="$build/valgrind-$(basename "$program").log"
  if valgrind --tool=memcheck --leak-check=full --show-leak-kinds=definite,indirect \
       --errors-for-leak-kinds=definite,indirect --error-exitcode=99 --log-file="$log" \
       "$program" --gtest_filter="${1:-*}" >/dev/null 2>&1; then
    echo "clean   $(basename "$program")"
  else
    echo "FINDING $(basename "$program") (see $log)"
    failed=1
  fi
done
exit "$failed"
