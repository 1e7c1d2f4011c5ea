#!/usr/bin/env bash
# Runs every benchmark; figures are ratios against peers measured in the same run.
set -euo pipefail
cd "$(dirname "$0")/.."

for program in build/bench/*_bench; do
  [ -x "$program" ] || continue
  echo "== $(basename "$program")"
  "$program"
done
