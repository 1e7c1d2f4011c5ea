#!/usr/bin/env bash
# Builds with line counters, runs the tests, and prints the executed lines of the binding, the plugin and its host library.
set -euo pipefail
cd "$(dirname "$0")/.."

jobs=${JOBS:-$(nproc)}
mkdir -p build-coverage
cmake --preset coverage >build-coverage/configure.log 2>&1 || { cat build-coverage/configure.log; exit 1; }
cmake --build build-coverage -j "$jobs"
find build-coverage -name '*.gcda' -delete
# A failing test is the business of the test run; what it executed counts.
ctest --test-dir build-coverage -j "$jobs" -LE 'image|fuzz' >build-coverage/tests.log 2>&1 || tail -n 20 build-coverage/tests.log
python3 scripts/coverage.py build-coverage
