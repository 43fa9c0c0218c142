#!/usr/bin/env bash
# Installs the build in $1 (of the sources in $2) to a folder of its own, builds the example of the
# front page against it as the front page says, by CMake and by pkg-config with the flags in $3, and
# runs it.
set -euo pipefail
build=$1 source=$2 flags=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

expect_found() { # how it was built, program
  local answer
  answer=$(LD_LIBRARY_PATH="$work/root/lib" "$2")
  [[ $answer == found ]] || { echo "built by $1, the example says '$answer', not 'found'"; exit 1; }
}

cmake --install "$build" --prefix "$work/root" > /dev/null
cmake -S "$source/tests/package/consumer" -B "$work/build" -DCMAKE_PREFIX_PATH="$work/root" \
  -DCMAKE_CXX_FLAGS="$flags" -DFIRST="$source/examples/first/first.cpp" > /dev/null
cmake --build "$work/build" > /dev/null
expect_found CMake "$work/build/first"

# The front page's own command, in a folder with the front page's own text.
mkdir "$work/page"
cd "$work/page"
sed -n '/^```cpp$/,/^```$/p' "$source/README.md" | sed '1d;$d' > first.cpp
cmp first.cpp "$source/examples/first/first.cpp" ||
  { echo "README.md shows another example than examples/first/first.cpp"; exit 1; }
command=$(grep -m 1 '^g++ first.cpp' "$source/README.md")
export PKG_CONFIG_PATH=$work/root/lib/pkgconfig
eval "${command/g++/g++ $flags}"
expect_found pkg-config ./first

# The page of the C interface, with its own text and command.
sed -n '/^```c$/,/^```$/p' "$source/docs/c-interface.md" | sed '1d;$d' > tours.c
command=$(grep -m 1 '^gcc tours.c' "$source/docs/c-interface.md")
eval "${command/gcc/gcc -std=c11 $flags}"
answer=$(LD_LIBRARY_PATH="$work/root/lib" ./tours)
[[ $answer == Tours ]] || { echo "the example of the C interface says '$answer'"; exit 1; }
