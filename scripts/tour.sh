#!/usr/bin/env bash
# Runs every example without a display and leaves its picture in build/tour.
set -euo pipefail
cd "$(dirname "$0")/.."

mkdir -p build/tour
for script in examples/[0-9]*.lua; do
  name=$(basename "$script" .lua)
  # An example may say in its head how long it takes to show what it is for: "-- tour: 4.5".
  seconds=$(sed -n 's/^-- tour: *\([0-9.]*\).*/\1/p' "$script" | head -n 1)
  seconds=${seconds:-4}
  echo "tour: $script"
  build/bin/vyr --gl=egl --size 1280x720 --duration "$seconds" --shot "t=$seconds:build/tour/$name.png" "$script"
done
echo "tour: pictures are in build/tour:"
ls -1 build/tour
