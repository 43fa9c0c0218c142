#!/usr/bin/env bash
# Builds the static libraries of the sources in $1 in the folder $2, installs them, and runs the
# examples of the front page against them: no shared library may be needed.
set -euo pipefail
source=$1 build=$2
cmake -S "$source" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_FLAGS_RELEASE='-O2 -DNDEBUG' \
  -DOT95_STATIC=ON -DOT95_TOOLS=OFF -DOT95_BENCH=OFF -DBUILD_TESTING=OFF --log-level=WARNING > /dev/null
cmake --build "$build" > /dev/null
[[ -z $(find "$build" -name '*.so*') ]] || { echo 'there are shared libraries'; exit 1; }
"$source/tests/package/consumer/run.sh" "$build" "$source" ""
