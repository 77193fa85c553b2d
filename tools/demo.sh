#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Builds what scripts need to run, renders a scene with the two example scripts and one that
# moves, and says how long that took and where the pictures are. Set-up comes first (tools/setup.sh).
set -euo pipefail

readonly scene=${1:?usage: tools/demo.sh SCENE}
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# A folder that was configured stays so, with its tests.
[[ -e build/build.ninja ]] || cmake --preset release -DOPENQUIL_TESTS=OFF
cmake --build --preset release --target scripting
mkdir -p build/demo
for example in raytrace depth_fog; do
    build/bin/quilhost "$scene" --python "examples/$example.py" \
        --output "build/demo/$example.png" --resolution 640 480
done
# A stalk that joints bend, at four times.
build/bin/quilhost examples/scenes/reed.gltf --frames 0-36x12 \
    --output 'build/demo/reed.##.png' --resolution 640 480
printf 'Built and rendered in %d seconds. The pictures are in:\n' "$SECONDS"
printf '  %s\n' "$PWD"/build/demo/{raytrace,depth_fog,reed.{00,12,24,36}}.png
