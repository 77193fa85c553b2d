#!/usr/bin/env bash
# Renders a scene with the two example scripts and says where the pictures are.
set -euo pipefail

readonly scene=${1:?usage: tools/demo.sh SCENE}
cd "$(dirname "${BASH_SOURCE[0]}")/.."
mkdir -p build/demo
for example in raytrace depth_fog; do
    build/bin/quilhost "$scene" --python "examples/$example.py" \
        --output "build/demo/$example.png" --resolution 640 480
done
printf 'The pictures are in:\n'
printf '  %s\n' "$PWD"/build/demo/{raytrace,depth_fog}.png
