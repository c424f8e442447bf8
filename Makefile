# The front door. `make test` is all a fresh clone needs: it installs missing
# Debian packages, fetches Yoga on the first configure, builds everything and
# runs every test, then does it again under AddressSanitizer + UBSan.

JOBS        ?= 2
BUILD       ?= build
ASAN_BUILD  ?= build-asan
FUZZ_BUILD  ?= build-fuzz
ARM64_BUILD ?= build-arm64
ARMHF_BUILD ?= build-armhf
FUZZ_SECONDS ?= 60
DEMO_OUT    ?= out
CMAKE_ARGS  ?=
GENERATOR   := $(if $(shell command -v ninja 2>/dev/null),-G Ninja,)

.PHONY: all deps deps-arm build demo preview goldens test test-unit test-asan test-arm bench fuzz format lint clean

all: build

# Installs missing Debian packages (needs root or sudo); quick when all are there.
deps:
	@bash tools/install-deps.sh

# The above, and the ARM cross compilers, qemu-user and GoogleTest's sources.
deps-arm:
	@bash tools/install-deps.sh arm

$(BUILD)/CMakeCache.txt: | deps
	cmake -S . -B $(BUILD) $(GENERATOR) -DCMAKE_BUILD_TYPE=RelWithDebInfo $(CMAKE_ARGS)

$(ASAN_BUILD)/CMakeCache.txt: | deps
	cmake -S . -B $(ASAN_BUILD) $(GENERATOR) -DCMAKE_BUILD_TYPE=Debug -DMERO_SANITIZE=ON $(CMAKE_ARGS)

$(ARM64_BUILD)/CMakeCache.txt: | deps-arm
	cmake -S . -B $(ARM64_BUILD) $(GENERATOR) -DCMAKE_BUILD_TYPE=RelWithDebInfo \
	  -DCMAKE_TOOLCHAIN_FILE=$(CURDIR)/cmake/aarch64-linux-gnu.cmake $(CMAKE_ARGS)

$(ARMHF_BUILD)/CMakeCache.txt: | deps-arm
	cmake -S . -B $(ARMHF_BUILD) $(GENERATOR) -DCMAKE_BUILD_TYPE=RelWithDebInfo \
	  -DCMAKE_TOOLCHAIN_FILE=$(CURDIR)/cmake/arm-linux-gnueabihf.cmake $(CMAKE_ARGS)

$(FUZZ_BUILD)/CMakeCache.txt:
	cmake -S . -B $(FUZZ_BUILD) $(GENERATOR) -DCMAKE_BUILD_TYPE=RelWithDebInfo \
	  -DCMAKE_CXX_COMPILER=clang++ -DMERO_FUZZ=ON -DMERO_BUILD_TESTS=OFF -DMERO_BUILD_BENCH=OFF $(CMAKE_ARGS)

build: deps $(BUILD)/CMakeCache.txt
	cmake --build $(BUILD) -j $(JOBS)

# Only what the previewer needs: the library and the Java host.
preview: deps $(BUILD)/CMakeCache.txt
	cmake --build $(BUILD) --target mero mero_preview -j $(JOBS)

# Renders every example card to $(DEMO_OUT)/<card>/ (pictures and trees).
demo: preview
	@MERO_BUILD=$(abspath $(BUILD)) bash tools/render-examples.sh $(DEMO_OUT)

# Renders every example again and replaces the golden trees of the snapshot
# tests; review `git diff tests/preview/golden` before committing.
goldens: preview
	@MERO_BUILD=$(abspath $(BUILD)) bash tools/render-examples.sh $(BUILD)/goldens
	@for folder in $(BUILD)/goldens/*/; do \
	  card=$$(basename $$folder); rm -rf tests/preview/golden/$$card; mkdir -p tests/preview/golden/$$card; \
	  cp $$folder/*.tree.json tests/preview/golden/$$card/; \
	done

test: deps
	$(MAKE) test-unit
	$(MAKE) test-asan

test-unit: build
	ctest --test-dir $(BUILD) --output-on-failure -j $(JOBS)

test-asan: $(ASAN_BUILD)/CMakeCache.txt
	cmake --build $(ASAN_BUILD) -j $(JOBS)
	ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1 \
	  ctest --test-dir $(ASAN_BUILD) --output-on-failure -j $(JOBS)

# Cross-builds Yoga, the library and the C++ tests for 64-bit ARM (arm64-v8a)
# and 32-bit ARM (armeabi-v7a), runs the tests under qemu-user, and fails when
# the card dump (tools/card-dump.cpp) of either differs from the desktop's.
test-arm: deps-arm $(BUILD)/CMakeCache.txt $(ARM64_BUILD)/CMakeCache.txt $(ARMHF_BUILD)/CMakeCache.txt
	cmake --build $(BUILD) --target mero_card_dump -j $(JOBS)
	$(BUILD)/tests/mero_card_dump . $(BUILD)/card-dump.txt
	@for build in $(ARM64_BUILD) $(ARMHF_BUILD); do \
	  echo "== $$build"; \
	  cmake --build $$build -j $(JOBS) && ctest --test-dir $$build --output-on-failure -j $(JOBS) || exit 1; \
	done
	@for build in $(ARM64_BUILD) $(ARMHF_BUILD); do \
	  if cmp -s $(BUILD)/card-dump.txt $$build/card-dump.txt; then \
	    echo "card dump: $$build/card-dump.txt is the same as $(BUILD)/card-dump.txt"; \
	  else \
	    echo "card dump: $$build/card-dump.txt differs from $(BUILD)/card-dump.txt:"; \
	    diff -u $(BUILD)/card-dump.txt $$build/card-dump.txt | head -80; exit 1; \
	  fi; \
	done

# Every figure in one run: the in-process benchmarks with their ratios, then
# the same instance work through JNI and the resident memory of live cards.
bench: build
	$(BUILD)/bench/mero_bench
	cmake --build $(BUILD) --target jvm_bench

# Runs every fuzz target for FUZZ_SECONDS each (make fuzz FUZZ_SECONDS=600).
fuzz: $(FUZZ_BUILD)/CMakeCache.txt
	cmake --build $(FUZZ_BUILD) -j $(JOBS)
	@for target in $(FUZZ_BUILD)/fuzz/fuzz_*; do \
	  name=$$(basename $$target); corpus=$(FUZZ_BUILD)/corpus/$$name; mkdir -p $$corpus; \
	  echo "== $$name for $(FUZZ_SECONDS) s"; \
	  $$target -max_total_time=$(FUZZ_SECONDS) -print_final_stats=1 $$corpus fuzz/seeds/$${name#fuzz_} || exit 1; \
	done

format:
	git ls-files '*.cpp' '*.h' | xargs clang-format -i

lint: build
	git ls-files 'src/*.cpp' | xargs clang-tidy -p $(BUILD) --quiet

clean:
	rm -rf $(BUILD) $(ASAN_BUILD) $(FUZZ_BUILD) $(ARM64_BUILD) $(ARMHF_BUILD) $(DEMO_OUT)
