#!/bin/sh
# Makes the pictures of docs/texture-modes.md anew, without a display; run it after a change of how surfaces are drawn.
set -e
cd "$(dirname "$0")/.."
for mode in DIFFUSE SHADOW SHADOW_JITTER NORMALMAP HEIGHTMAP SPECULARMAP SPHEREMAP; do
  build/bin/vyr --gl=egl --size 480x270 --seed 1 --duration 1 \
    --shot "t=0.5:docs/images/texture-$mode.png" examples/045-texture-modes.lua "${mode}_TEXTURE"
done
