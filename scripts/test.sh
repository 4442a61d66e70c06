#!/usr/bin/env bash
# Sets up a Debian 12 machine, builds everything and runs the whole test suite twice: as built for
# users, and built with AddressSanitizer and UndefinedBehaviorSanitizer, which stop at the first
# finding. LM_SANITIZE=thread (or any other list) runs only that one sanitized build.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup-debian.sh

export ASAN_OPTIONS="halt_on_error=1:detect_leaks=1${ASAN_OPTIONS:+:$ASAN_OPTIONS}"
export UBSAN_OPTIONS="halt_on_error=1:print_stacktrace=1${UBSAN_OPTIONS:+:$UBSAN_OPTIONS}"

run_suite() {
  local sanitize=$1 build=build${1:+-${1//,/-}}
  local extra=()
  [ -z "$sanitize" ] || extra=(-DLM_BUILD_BENCHMARKS=OFF -DLM_BUILD_EXAMPLES=OFF)
  cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DLM_SANITIZE="$sanitize" "${extra[@]}" >/dev/null
  cmake --build "$build" -j"$(nproc)"
  ctest --test-dir "$build" --output-on-failure -j"$(nproc)"
}

if [ -n "${LM_SANITIZE:-}" ]; then
  run_suite "$LM_SANITIZE"
else
  run_suite ""
  run_suite address,undefined
fi
