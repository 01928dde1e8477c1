# Thin wrapper over CMake. `make test` builds and tests twice: a plain
# Release build in build/ and a sanitized one in build-asan/ (without the
# long soak tests, labelled "soak").

BUILD      ?= build
ASAN_BUILD ?= build-asan
FUZZ_BUILD ?= build-fuzz
JOBS       ?= 2
# The fuzz targets (fuzz/), and how long `make fuzz` and `make fuzz-smoke`
# run each, in seconds.
FUZZ_TARGETS := dict config ini wordlists segment normalize
FUZZ_SECONDS ?= 60
FUZZ_SMOKE_SECONDS ?= 10

# Debian packages the build, the tests and the default data need.
# opencc, libopencc-data: the source of the GBK translation table, which a test regenerates.
# python3-jieba: the word list of the default dictionaries (build/data/).
# clang: the fuzz targets (make fuzz).
# openjdk-17-jdk-headless, junit5: the Java class, its JUnit suites and the demo.
PACKAGES := cmake make g++ pkg-config libgtest-dev libgmock-dev libbenchmark-dev \
            opencc libopencc-data python3-jieba clang openjdk-17-jdk-headless junit5

SUDO := $(shell [ "$$(id -u)" = 0 ] || echo sudo)

.PHONY: all deps configure build test test-plain test-asan demo bench fuzz fuzz-build fuzz-smoke clean

all: build

deps:
	@missing=$$(for p in $(PACKAGES); do \
	  dpkg-query -W -f='$${Status}\n' $$p 2>/dev/null | grep -q '^install ok installed' || echo $$p; \
	done); \
	if [ -n "$$missing" ]; then \
	  echo "installing:" $$missing; \
	  $(SUDO) env DEBIAN_FRONTEND=noninteractive apt-get update -qq && \
	  $(SUDO) env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends $$missing >/dev/null; \
	fi

$(BUILD)/CMakeCache.txt: | deps
	cmake -S . -B $(BUILD) -DCMAKE_BUILD_TYPE=Release

$(ASAN_BUILD)/CMakeCache.txt: | deps
	cmake -S . -B $(ASAN_BUILD) -DCMAKE_BUILD_TYPE=RelWithDebInfo -DZEG_SANITIZE=ON -DZEG_BUILD_BENCH=OFF

configure: $(BUILD)/CMakeCache.txt

build: deps $(BUILD)/CMakeCache.txt
	cmake --build $(BUILD) -j$(JOBS)

test-plain: build
	cd $(BUILD) && ctest --output-on-failure -j$(JOBS)

test-asan: deps $(ASAN_BUILD)/CMakeCache.txt
	cmake --build $(ASAN_BUILD) -j$(JOBS)
	cd $(ASAN_BUILD) && ASAN_OPTIONS=detect_leaks=1:abort_on_error=0 \
	  UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 ctest --output-on-failure -j$(JOBS) -LE soak

test: test-plain test-asan

bench: build
	@for b in $(BUILD)/bin/bench_*; do echo "== $$b"; $$b; done
	@echo "== Normalizer.normalize through JNI"; cmake --build $(BUILD) --target bench_jni

# libFuzzer on every input surface, built with clang (sanitized) in its own
# folder. Each target's corpus grows in $(FUZZ_BUILD)/corpus/NAME, starting
# from its built-in and committed seeds and its regression inputs; its log
# is $(FUZZ_BUILD)/fuzz_NAME.log, a crash lands in $(FUZZ_BUILD)/fuzz_NAME-*
# (fix it, then copy the input to fuzz/regressions/NAME/). The first
# failing target stops the run.
$(FUZZ_BUILD)/CMakeCache.txt: | deps
	cmake -S . -B $(FUZZ_BUILD) -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_C_COMPILER=clang \
	  -DCMAKE_CXX_COMPILER=clang++ -DZEG_SANITIZE=ON -DZEG_BUILD_FUZZ=ON -DZEG_BUILD_TESTS=OFF \
	  -DZEG_BUILD_BENCH=OFF

fuzz-build: deps $(FUZZ_BUILD)/CMakeCache.txt
	cmake --build $(FUZZ_BUILD) -j$(JOBS) --target $(foreach t,$(FUZZ_TARGETS),fuzz_$(t) fuzz_$(t)_replay)

# $(1): seconds per target.
define run-fuzzers
	@set -e; cd $(FUZZ_BUILD); for t in $(FUZZ_TARGETS); do \
	  mkdir -p corpus/$$t; bin/fuzz_$${t}_replay --write-seeds corpus/$$t > /dev/null; \
	  dirs=corpus/$$t; \
	  for d in $(CURDIR)/fuzz/seeds/$$t $(CURDIR)/fuzz/regressions/$$t; do \
	    if [ -d $$d ]; then dirs="$$dirs $$d"; fi; done; \
	  case $$t in dict) len=-max_len=200000;; *) len=;; esac; \
	  printf '== fuzz_%s, %s s: ' $$t $(1); \
	  if ASAN_OPTIONS=detect_leaks=1 bin/fuzz_$$t -max_total_time=$(1) -timeout=10 $$len \
	       -artifact_prefix=fuzz_$$t- $$dirs > fuzz_$$t.log 2>&1; then \
	    grep -a -E '^#[0-9]+.*DONE' fuzz_$$t.log | tail -1; \
	  else echo FAILED; tail -40 fuzz_$$t.log; exit 1; fi; \
	done
endef

fuzz: fuzz-build
	$(call run-fuzzers,$(FUZZ_SECONDS))

# A short run of each target, for CI.
fuzz-smoke: fuzz-build
	$(call run-fuzzers,$(FUZZ_SMOKE_SECONDS))

# The sample queries through the Java class, in the usual mode (252).
demo: build
	@java -Djava.library.path=$(BUILD)/lib \
	  -cp $(BUILD)/lib/zeg-normalizer.jar:$(BUILD)/lib/zeg-normalizer-demo.jar \
	  com.orvane.dw.comm.zeg.demo.NormalizeDemo \
	  $(BUILD)/data/normalizer.ini $(BUILD)/data/sample-queries.txt 252

clean:
	rm -rf $(BUILD) $(ASAN_BUILD) $(FUZZ_BUILD)
