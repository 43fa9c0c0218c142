#!/usr/bin/env bash
# Installs the build in $1 (of the sources in $2) to a folder, moves that elsewhere, builds the examples
# of the front page against it as the front page says, by CMake and by pkg-config with the flags in
# $3, and runs them.
set -euo pipefail
build=$1 source=$2 flags=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() { printf '%s\n' "$*"; exit 1; }

cmake --install "$build" --prefix "$work/first" > /dev/null
mv "$work/first" "$work/root"
export LD_LIBRARY_PATH=$work/root/lib PKG_CONFIG_PATH=$work/root/lib/pkgconfig
! grep -rl "$work/first" "$work/root" || fail 'these installed files hold a path'

expect() { # what is wanted, how it was built, command
  local answer
  answer=$("${@:3}") || fail "built by $2, ${*:3} fails"
  [[ $answer == "$1" ]] || fail "built by $2, ${*:3} says '$answer', not '$1'"
}

# What a page shows: `block FILE LANGUAGE [NUMBER]`, and the first command of a page that begins so.
block() {
  awk -v fence='```'"$2" -v wanted="${3:-1}" '
    $0 == fence { inside = ++seen == wanted; next }
    /^```/ { inside = 0 }
    inside' "$1"
}
command_of() { grep -m 1 "^$2" "$1" || fail "$1 shows no command that begins with $2"; }

mkdir "$work/page"
cd "$work/page"
page=$source/README.md
block "$page" cpp > first.cpp
cmp first.cpp "$source/examples/first/first.cpp" ||
  fail 'README.md shows another example than examples/first/first.cpp'
block "$page" c > second.c
block "$source/docs/c-interface.md" c > tours.c
cp "$source/tests/package/consumer/"{CMakeLists.txt,below.cpp} .

cmake -S . -B build -DCMAKE_PREFIX_PATH="$work/root" -DCMAKE_CXX_FLAGS="$flags" \
  -DCMAKE_C_FLAGS="$flags" > /dev/null
cmake --build build > /dev/null
for program in first first_by_file below; do expect found CMake build/$program; done
expect 'zorn comes first' CMake build/second

compile() { # page, beginning of the command
  local command
  command=$(command_of "$1" "$2")
  eval "${command/ / $flags }"
}
compile "$page" 'g++ first.cpp'
expect found pkg-config ./first
compile "$page" 'gcc second.c'
expect 'zorn comes first' pkg-config ./second
compile "$source/docs/c-interface.md" 'gcc tours.c'
expect Tours pkg-config ./tours
# shellcheck disable=SC2046
g++ $flags below.cpp -o below $(pkg-config --cflags --libs ot95-oin)
expect found 'pkg-config of the libraries below' ./below

# Programs find the libraries by themselves.
unset LD_LIBRARY_PATH
[[ ! -x $work/root/bin/ottm ]] ||
  expect fffe 'the installation' "$work/root/bin/ottm" encode short -2 --form big-endian

if [[ -d $work/root/lib/python3 && -z $flags ]]; then
  block "$page" python > third.py
  expect "['Zorn', 'Åmål', 'Örebro']" 'the installation' \
    env PYTHONPATH="$work/root/lib/python3/dist-packages" /usr/bin/python3 -B third.py
fi
