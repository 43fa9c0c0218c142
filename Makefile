# For people: a thin layer over CMake's presets. Everything is built with both cores.
JOBS ?= $(shell nproc)
SOURCES = git ls-files '*.h' '*.cpp' | grep -v '^oin/data/'

.PHONY: all run test bench format check-format clean setup release dev ilp32

all: setup release

run: setup release
	@scripts/tour

test: setup check-format
	@scripts/test

bench: setup release
	@scripts/bench

setup:
	@scripts/setup

release dev ilp32:
	@scripts/build $@ $(JOBS)

format:
	@$(SOURCES) | xargs clang-format-14 -i

check-format:
	@$(SOURCES) | xargs clang-format-14 --dry-run -Werror

clean:
	@rm -rf build
