#!/usr/bin/env bash
# Runs the binding tests under valgrind, which also sees what uninstrumented libraries do. FILTER chooses other tests, ALL=1 all.
set -uo pipefail
cd "$(dirname "$0")/.."

if ! command -v valgrind >/dev/null; then
  sudo=()
  [ "$(id -u)" -eq 0 ] || sudo=(sudo)
  "${sudo[@]}" apt-get update -qq
  "${sudo[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends valgrind >/dev/null || exit 1
fi

check=(valgrind --quiet --error-exitcode=99 --suppressions=scripts/valgrind.supp --num-callers=30 --leak-check=no)
status=0
run() { # name, command
  local started=$SECONDS
  "${check[@]}" "${@:2}" >"build/valgrind-$1.log" 2>&1
  local code=$?
  echo "valgrind: $1 ended with $code after $((SECONDS - started)) s, $(grep -c '^==[0-9]*== [A-Z].*' "build/valgrind-$1.log") lines of findings"
  if [ $code -ne 0 ]; then
    grep -A 30 '^==[0-9]*== [A-Z]' "build/valgrind-$1.log" | head -n 60
    status=1
  fi
}

run machinery build/tests/machinery_test
run machinery-explicit build/tests/machinery_explicit_test
run modules-explicit build/tests/modules_explicit_test
run state build/tests/state_binding_test
filter=${FILTER:-Camera*:Node*:Registration*:SharedBlock*:Tree*:SimulationObject*}
[ -z "${ALL:-}" ] || filter='*'
run modules build/tests/modules_test "--gtest_filter=$filter"
for script in hostile ownership scenevalues; do
  run "$script" build/bin/vyr --gl=none "tests/lua/$script.lua"
done
exit $status
