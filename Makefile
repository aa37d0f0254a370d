# Two entry points for a fresh machine: `make run` and `make test`.
BUILD      ?= build
RELEASE    := $(BUILD)/release
SANITIZED  := $(BUILD)/sanitized
FUZZ       := $(BUILD)/fuzz
BENCH      := $(BUILD)/bench
FUZZ_SECONDS ?= 30
CMAKE_GEN  := -G Ninja

.PHONY: all deps release run test fuzz bench clean

all: release

deps:
	@scripts/install-deps

release: deps
	cmake -S . -B $(RELEASE) $(CMAKE_GEN) -DCMAKE_BUILD_TYPE=Release -DBUILD_TESTING=ON
	cmake --build $(RELEASE)

run: release
	@QORVEL_BIN=$(RELEASE)/launcher/qorvel FAKE_JVM=$(RELEASE)/tests/fake_jvm examples/demo.sh

test: deps
	cmake -S . -B $(SANITIZED) $(CMAKE_GEN) -DCMAKE_BUILD_TYPE=Debug -DQORVEL_SANITIZE=ON
	cmake --build $(SANITIZED)
	ctest --test-dir $(SANITIZED) --output-on-failure -j2

fuzz: deps
	CC=clang CXX=clang++ cmake -S . -B $(FUZZ) $(CMAKE_GEN) -DCMAKE_BUILD_TYPE=RelWithDebInfo \
		-DQORVEL_FUZZ=ON -DBUILD_TESTING=OFF
	cmake --build $(FUZZ)
	scripts/run-fuzzers $(FUZZ)/fuzz $(FUZZ_SECONDS)

bench: deps
	cmake -S . -B $(BENCH) $(CMAKE_GEN) -DCMAKE_BUILD_TYPE=Release -DQORVEL_BENCH=ON -DBUILD_TESTING=OFF
	cmake --build $(BENCH)
	scripts/run-benchmarks $(BENCH)

clean:
	rm -rf $(BUILD)
