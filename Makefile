# The short commands. Each installs the packages it lacks and calls the CMake presets; nothing else happens here.
PREFIX ?= /usr/local

.PHONY: all run test verify bench docs install clean configure

all: configure
	cmake --build --preset release

configure:
	tools/install-packages.sh
	cmake --preset release

run: configure
	cmake --build --preset release --target ketra_app
	build/release/apps/ketra/ketra compare examples/10-lox-hydrogen-engine.cfg examples/11-lox-hydrogen-frozen.cfg

test: all
	ctest --preset release

# Every random case, grid and comparison of docs/verification.md.
verify: all
	build/release/tools/convergence
	/usr/bin/python3 -B tests/second/compare.py build/release/tests/second/second_cases --all --jobs 2

bench: configure
	cmake --build --preset release --target ketra_benchmarks
	build/release/benchmarks/ketra_benchmarks

docs:
	tools/install-packages.sh doxygen
	cmake --preset release -DKETRA_BUILD_DOCS=ON
	cmake --build --preset release --target docs

install: all
	cmake --install build/release --prefix $(PREFIX)

clean:
	cmake -E rm -rf build
