#!/usr/bin/env bash
# Runs for long: COUNT objects of each class that come and go, and DURATION seconds of simulation with a script in the loop.
# Texts and curves come to build/long: lifetimes.txt, lifetimes.csv, simulation.txt, simulation.csv.
set -euo pipefail
cd "$(dirname "$0")/.."

# The C library otherwise keeps ever larger freed blocks, and the curves would show its habits.
export MALLOC_MMAP_THRESHOLD_=131072 MALLOC_TRIM_THRESHOLD_=131072
folder=build/long
mkdir -p "$folder"
status=0
build/bin/vyr --gl=none tests/long/simulation.lua --duration "${DURATION:-600}" --csv "$folder/simulation.csv" |
  tee "$folder/simulation.txt" || status=1
build/bin/vyr --gl=none tests/long/lifetimes.lua --count "${COUNT:-1000000}" --seconds "${SECONDS_A_CLASS:-600}" \
  --csv "$folder/lifetimes.csv" | tee "$folder/lifetimes.txt" || status=1
exit $status
