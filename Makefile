# For people: a thin layer over CMake's presets. Everything is built with both cores.
JOBS ?= $(shell nproc)
SOURCES = git ls-files '*.h' '*.cpp' | grep -v '^oin/data/'

# No target is a file.
.PHONY: $(shell sed -n 's/^\([a-z0-9 -]*\):.*/\1/p' $(firstword $(MAKEFILE_LIST)))

all: setup-bench release

run: setup-run
	@echo 'Building the libraries and both programs, about a minute on two cores; then the tour begins.'
	@scripts/build release $(JOBS) ottm otdb
	@scripts/tour

examples: setup-examples
	@scripts/build release $(JOBS) index_c places_rocksdb places_redis
	@examples/c/run build/bin/index_c
	@examples/rocksdb/run build/bin/places_rocksdb
	@examples/redis/run build/bin/places_redis

test: setup-test check-format
	@scripts/test

# Debian's packages in build/packages, and their test in a Debian of its own (root).
package: setup-package
	@scripts/package
check-package: package
	@scripts/check-packages

# The extension in SQLite's own shell, with all examples of its README.
test-sqlite: setup-sqlite
	@scripts/build release $(JOBS) ot95_sqlite ottm
	@extensions/sqlite/test.py build/lib/ot95.so build/bin/ottm

# The tests of the C interface under the thread sanitizer; `test` has them under the other ones.
test-threads: setup-test
	@scripts/build tsan $(JOBS)
	@ctest --preset tsan

# A coordinator and three shards of PostgreSQL on this machine, of which one moves and one dies.
cluster: setup-postgresql
	@scripts/build release $(JOBS) ot95Otms
	@examples/cluster/run build

# The extension of PostgreSQL in a server that is thrown away, with all examples of its README.
test-postgresql: setup-postgresql
	@scripts/build release $(JOBS) ot95Otms
	@extensions/postgresql/tests/run build

bench: setup-bench
	@scripts/build release $(JOBS) ot95_bench
	@scripts/bench

bench-sqlite: setup-bench
	@scripts/build release $(JOBS) ot95_sqlite ot95_sqlite_bench
	@extensions/sqlite/bench/run build/bin/ot95_sqlite_bench build/lib/ot95.so

bench-postgresql: setup-postgresql
	@scripts/build release $(JOBS) ot95Otms
	@extensions/postgresql/bench/run build

# What programs that were built before rely on; accept-abi after a release that may change it.
check-abi accept-abi: setup-test
	@scripts/check-abi $(if $(filter accept-abi,$@),--accept)

# The module for Python and its guide.
test-python: setup-python
	@scripts/build release $(JOBS) ot95Otms ot95_python
	@ctest --test-dir build/release -R '^python$$' --output-on-failure

check-orders: setup-test
	@scripts/check-orders

# Stored forms, keys and hashes on machines of another byte order and another instruction set.
test-machines: setup-machines
	@scripts/test-machines

# Attacks stores, for as long as it takes or FOR=seconds.
torture: setup-run
	@scripts/build release $(JOBS) otdb
	@scripts/torture $(if $(FOR),--for $(FOR)) $(if $(SEED),--seed $(SEED))

# The instructions of the most important loops against the committed ones.
bench-check: setup-bench
	@scripts/build release $(JOBS) ot95_bench
	@scripts/corpora build/corpora
	@scripts/bench-check build/corpora

setup-%:
	@scripts/setup $*

release dev ilp32 uchar:
	@scripts/build $@ $(JOBS)

# Searches for inputs that break something, FOR seconds a target.
FOR ?= 60
fuzz: setup-fuzz
	@scripts/build fuzz $(JOBS)
	@scripts/fuzz $(FOR)

format:
	@$(SOURCES) | xargs clang-format-14 -i

check-format:
	@$(SOURCES) | xargs clang-format-14 --dry-run -Werror

clean:
	@rm -rf build
