#!/usr/bin/env bash
# Runs the same scene with both solvers in the release build and in the sanitizers' build, and compares the states of all steps.
set -euo pipefail
cd "$(dirname "$0")/.."

steps=${STEPS:-600}
folder=build/determinism
mkdir -p "$folder"
status=0
for solver in ITERATIVE MULTI; do
  for build in build build-asan; do
    "$build/bin/vyr" --gl=none --steps "$steps" tests/determinism/hashes.lua "$solver" "$folder/$solver-$build.txt" 2>/dev/null
  done
  if cmp -s "$folder/$solver-build.txt" "$folder/$solver-build-asan.txt"; then
    echo "$solver: $(wc -l <"$folder/$solver-build.txt") steps are equal, the last $(tail -n 1 "$folder/$solver-build.txt")"
  else
    echo "$solver: the builds differ: $(diff "$folder/$solver-build.txt" "$folder/$solver-build-asan.txt" | sed -n 2p)"
    status=1
  fi
done
exit $status
