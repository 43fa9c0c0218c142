# Makes a test program of the examples in the public headers: awk -f examples.awk HEADER... Each
# @code block becomes a test; a comment in it that states a comparison ("// left == 299") becomes
# a check behind its line. A header without an example doesn't compile.

function quit_header() {
  if (header != "" && !examples) printf "#error \"%s shows no example\"\n", header
}

BEGIN {
  print "#include <gtest/gtest.h>\n#include <map>\n#include <sstream>\n#include <unordered_set>"
  for (i = 1; i < ARGC; ++i) {
    name = ARGV[i]
    sub(/.*\//, "", name)
    printf "#include \"ot95/%s\"\n", name
  }
}

FNR == 1 {
  quit_header()
  header = FILENAME
  examples = 0
  title = FILENAME
  sub(/.*\//, "", title)
  gsub(/[^a-z0-9]/, "", title)
}

/^ *\/\/\/ @endcode/ && inside {
  print "}"
  inside = 0
  next
}

inside {
  line = $0
  sub(/^ *\/\/\/ ?/, "", line)
  printf "#line %d \"%s\"\n%s\n", FNR, FILENAME, line
  check = line
  if (sub(/^.*\/\/ /, "", check) && check ~ / (==|!=|<|>|<=|>=) /) {
    printf "#line %d \"%s\"\n  EXPECT_TRUE((%s));\n", FNR, FILENAME, check
  }
}

/^ *\/\/\/ @code/ {
  inside = 1
  printf "TEST(Examples, %s%d) {\n", title, ++examples
}

END { quit_header() }
