#!/usr/bin/env bash
# Calls everything that is bound with random values, seed after seed, and keeps a log of what came of each.
#
#   scripts/fuzz.sh [BUILD [CALLS [FIRST-SEED [CALLS-OF-A-SEED]]]]      (build 1000000 1 100000)
#
# BUILD/fuzz.log receives a line a seed. A seed that does not end by itself is made again with a record of its calls in
# BUILD/fuzz/SEED; equal seeds make equal calls. The exit code is 1 where there was one.
set -uo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
build=$(cd "${1:-$here/build}" && pwd)
total=${2:-1000000}
seed=${3:-1}
each=${4:-100000}
script=$here/tests/fuzz/fuzz.lua

run() { # folder, further options: the exit code of the program
  rm -rf "$1"
  mkdir -p "$1"
  (cd "$1" && timeout -k 5 600 "$build/bin/vyr" --gl=none "$script" --seed "$seed" --calls "$each" "${@:2}" \
    >output.txt 2>messages.txt)
}

status=0
made=0
while [ "$made" -lt "$total" ]; do
  folder=$build/fuzz/$seed
  started=$(date +%s)
  run "$folder"
  code=$?
  summary=$(grep -a -o "seed $seed: .*" "$folder/output.txt" | tail -n 1)
  made=$((made + each))
  # Code 3: a call asked for a picture, which a run without graphics cannot have.
  if [ -n "$summary" ] && { [ $code -eq 0 ] || [ $code -eq 3 ]; }; then
    echo "$summary, $(($(date +%s) - started)) s" >>"$build/fuzz.log"
    rm -rf "$folder"
  else
    echo "seed $seed: ENDED with $code after $(($(date +%s) - started)) s" | tee -a "$build/fuzz.log"
    cp "$folder/messages.txt" "$build/fuzz/$seed.first.txt"
    run "$folder" --trace calls.txt
    status=1
  fi
  seed=$((seed + 1))
done
echo "$build: $made calls"
exit $status
