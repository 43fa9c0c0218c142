#!/usr/bin/env bash
# Installs the build in $1 (of the sources in $2) to a folder of its own, builds the consumer
# against it with the flags in $3, and runs it.
set -euo pipefail
build=$1 source=$2 flags=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cmake --install "$build" --prefix "$work/root" > /dev/null
cmake -S "$source/tests/package/consumer" -B "$work/build" -DCMAKE_PREFIX_PATH="$work/root" \
  -DCMAKE_CXX_FLAGS="$flags" -DFIRST="$source/examples/first/first.cpp" > /dev/null
cmake --build "$work/build" > /dev/null
answer=$("$work/build/first")
[[ $answer == found ]] || { echo "the example says '$answer', not 'found'"; exit 1; }

# The front page shows the very text that was just compiled.
shown=$(sed -n '/^```cpp$/,/^```$/p' "$source/README.md" | sed '1d;$d')
[[ $shown == "$(cat "$source/examples/first/first.cpp")" ]] ||
  { echo "README.md shows another example than examples/first/first.cpp"; exit 1; }
