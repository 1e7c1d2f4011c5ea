# The commands of everyday work; each one installs and builds what it needs first.

.PHONY: setup build run test sanitize-build sanitize fuzz long-run determinism valgrind tsan coverage bench format tidy manifests clean

JOBS ?= $(shell nproc)

setup:
	@scripts/setup.sh

build: setup
	@mkdir -p build
	@cmake --preset release >build/configure.log 2>&1 || { cat build/configure.log; exit 1; }
	cmake --build build -j $(JOBS)

# The tour: the examples, rendered without a display, as pictures in build/tour.
run: build
	@scripts/tour.sh

# Everything once as released, then the same tests under AddressSanitizer and UndefinedBehaviorSanitizer.
test: build sanitize-build
	@scripts/test.sh

sanitize-build: setup
	@mkdir -p build-asan
	@cmake --preset asan >build-asan/configure.log 2>&1 || { cat build-asan/configure.log; exit 1; }
	cmake --build build-asan -j $(JOBS)

# The visual layer's tests look for leaks in one process: only while the drivers' libraries are loaded can theirs be told.
sanitize: sanitize-build
	ctest --test-dir build-asan --output-on-failure -j $(JOBS)
	cd build-asan && ASAN_OPTIONS=detect_leaks=1 tests/test_vyrOSG --gtest_brief=1

# Random calls of everything that is bound, in both builds; CALLS and SEED set how many and where they begin.
fuzz: build sanitize-build
	scripts/fuzz.sh build $(or $(CALLS),1000000) $(or $(SEED),1)
	scripts/fuzz.sh build-asan $(or $(CALLS),1000000) $(or $(SEED),1) 50000

# Objects of every class that come and go a million times, and ten minutes of simulation: memory stays flat.
long-run: build
	@scripts/long-run.sh

# The states of a scene, step by step, in the release build and in the sanitizers' build.
determinism: build sanitize-build
	@scripts/determinism.sh

# The binding tests under valgrind (installed if missing); ALL=1 runs every one.
valgrind: build
	@scripts/valgrind.sh

# The reference counts and observers of the core library under ThreadSanitizer.
tsan: setup
	@mkdir -p build-tsan
	@cmake --preset tsan >build-tsan/configure.log 2>&1 || { cat build-tsan/configure.log; exit 1; }
	cmake --build build-tsan -j $(JOBS) --target test_vyrCore
	build-tsan/tests/test_vyrCore

# The share of lines that the tests execute, in binding/, plugin/ and toolkit/vyrLua.
coverage: setup
	@scripts/coverage.sh

bench: build
	@scripts/bench.sh

format: setup
	git ls-files '*.cpp' '*.h' | xargs clang-format -i

tidy: build
	git ls-files 'plugin/*.cpp' 'binding/*.cpp' 'host/*.cpp' 'toolkit/*.cpp' | xargs clang-tidy -p build --quiet

# Rewrites the committed texts of the bound interface after a wanted change.
manifests: build
	cmake --build build --target manifests

clean:
	rm -rf build build-asan build-coverage build-dev build-tsan
