#!/usr/bin/env bash
# Runs all tests of the release build, then all of the sanitizer build, and ends with CTest's own summary of each.
set -uo pipefail
cd "$(dirname "$0")/.."

jobs=${JOBS:-$(nproc)}
status=0
echo "== release"
ctest --test-dir build --output-on-failure -j "$jobs" || status=1
echo "== AddressSanitizer and UndefinedBehaviorSanitizer"
ctest --test-dir build-asan --output-on-failure -j "$jobs" || status=1
exit $status
