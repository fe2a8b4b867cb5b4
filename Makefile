# Makefile - the two front doors: `make run` and `make test`.
BUILD_DIR ?= build
ASAN_DIR ?= build-asan
FUZZ_DIR ?= build-fuzz
FUZZ_SECONDS ?= 60
JOBS ?= 2
# Looked up when a recipe runs, after `deps` may have installed ninja.
GENERATOR = $(shell command -v ninja >/dev/null 2>&1 && echo "-G Ninja")

.PHONY: all deps test-deps configure build run test test-asan fuzz golden bench clean

all: build

# Installs the Debian packages of scripts/packages.txt that are missing; silent when none is.
deps:
	@bash scripts/install_deps.sh

# The same, with the packages only the tests need (scripts/packages-test.txt).
test-deps:
	@bash scripts/install_deps.sh --with-tests

$(BUILD_DIR)/CMakeCache.txt: | deps
	cmake -S . -B $(BUILD_DIR) $(GENERATOR) -DCMAKE_BUILD_TYPE=RelWithDebInfo

configure: $(BUILD_DIR)/CMakeCache.txt

build: configure
	cmake --build $(BUILD_DIR) -j $(JOBS)

# The main job: the showcase commands over the bundled sample survey. Exit status 1 means
# a command reported an error (printed with the output); only a failure to run is fatal here.
run: build
	@$(BUILD_DIR)/app/quilt examples/showcase.qlt; status=$$?; \
	  $(BUILD_DIR)/app/quilt --split wave examples/showcase-waves.qlt; waves=$$?; \
	  [ $$waves -gt $$status ] && status=$$waves; \
	  if [ $$status -eq 1 ]; then echo "(quilt: a command reported an error; see the messages above)"; fi; \
	  [ $$status -le 1 ]

test: test-deps build
	ctest --test-dir $(BUILD_DIR) --output-on-failure -j $(JOBS)

# The same suite under AddressSanitizer and UndefinedBehaviorSanitizer.
test-asan: test-deps
	cmake -S . -B $(ASAN_DIR) $(GENERATOR) -DCMAKE_BUILD_TYPE=Debug -DQUILT_SANITIZE=ON -DQUILT_BUILD_BENCHMARKS=OFF
	cmake --build $(ASAN_DIR) -j $(JOBS)
	ctest --test-dir $(ASAN_DIR) --output-on-failure -j $(JOBS)

# The libFuzzer harnesses of tests/fuzz (command lexer, CSV reader, dictionary reader, whole
# commands through every writer), built with clang and the sanitizers, each run for
# FUZZ_SECONDS (default 60) one after the other; fails on any crash, leak, timeout or
# assertion, keeping the input in $(FUZZ_DIR)/fuzz/findings.
fuzz: test-deps
	cmake -S . -B $(FUZZ_DIR) $(GENERATOR) -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_CXX_COMPILER=clang++ \
	  -DQUILT_FUZZ=ON -DQUILT_BUILD_BENCHMARKS=OFF
	cmake --build $(FUZZ_DIR) -j $(JOBS) --target fuzzers
	tests/fuzz/run_fuzzers.sh $(FUZZ_DIR) $(FUZZ_SECONDS)

# Rewrites the golden files from the current build; review the diff before committing.
golden: build
	QUILT_UPDATE_GOLDEN=1 ctest --test-dir $(BUILD_DIR) -j $(JOBS) || true

bench: build
	bench/run_bench.sh

clean:
	rm -rf $(BUILD_DIR) $(ASAN_DIR) $(FUZZ_DIR)
