#!/usr/bin/env bash
# Installs the Debian packages that the project builds and runs with; quick when nothing is missing.
set -euo pipefail

packages=(
  # tools
  build-essential ccache clang-format clang-tidy cmake git ninja-build pkg-config python3
  # libraries that are linked
  libapr1-dev libbullet-dev libedit-dev libegl-dev libgl-dev libglu1-mesa-dev liblua5.1-0-dev libopenscenegraph-dev
  libsqlite3-dev libtolua++5.1-dev nlohmann-json3-dev
  # drawing without a display, and in a window without a screen
  libegl1 libgl1-mesa-dri xauth xvfb
  # fonts, films
  ffmpeg fonts-dejavu-core
  # tests and benchmarks
  libbenchmark-dev libgmock-dev libgtest-dev
)

missing=()
for package in "${packages[@]}"; do
  if ! dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q 'install ok installed'; then
    missing+=("$package")
  fi
done

if [ ${#missing[@]} -eq 0 ]; then
  echo "setup: all ${#packages[@]} packages are installed"
  exit 0
fi

sudo=()
if [ "$(id -u)" -ne 0 ]; then
  if ! command -v sudo >/dev/null; then
    echo "setup: run this as root, or install: ${missing[*]}" >&2
    exit 1
  fi
  sudo=(sudo)
fi

echo "setup: installing ${missing[*]}"
"${sudo[@]}" apt-get update -qq
"${sudo[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
echo "setup: done"
