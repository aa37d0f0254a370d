# Two entry points for a fresh machine: `make run` and `make test`.
BUILD      ?= build
PREFIX     ?= /usr/local
RELEASE    := $(BUILD)/release
PACKAGE    := $(BUILD)/package
SANITIZED  := $(BUILD)/sanitized
FUZZ       := $(BUILD)/fuzz
BENCH      := $(BUILD)/bench
LEAK       := $(BUILD)/leak
FUZZ_SECONDS ?= 30
CMAKE_GEN  := -G Ninja

.PHONY: all deps release run test install package fuzz bench leak-check clean

all: release

deps:
	@scripts/install-deps

release: deps
	cmake -S . -B $(RELEASE) $(CMAKE_GEN) -DCMAKE_BUILD_TYPE=Release -DBUILD_TESTING=ON \
		-DCMAKE_INSTALL_PREFIX=$(PREFIX)
	cmake --build $(RELEASE)

# The demo needs the program alone: the release is configured, only qorvel is built.
run: deps
	cmake -S . -B $(RELEASE) $(CMAKE_GEN) -DCMAKE_BUILD_TYPE=Release -DBUILD_TESTING=ON \
		-DCMAKE_INSTALL_PREFIX=$(PREFIX)
	cmake --build $(RELEASE) --target qorvel_exe
	@QORVEL_BIN=$(RELEASE)/launcher/qorvel examples/demo.sh

# make install [PREFIX=/usr/local] [DESTDIR=/staging]
install: deps
	cmake -S . -B $(RELEASE) $(CMAKE_GEN) -DCMAKE_BUILD_TYPE=Release -DBUILD_TESTING=ON \
		-DCMAKE_INSTALL_PREFIX=$(PREFIX)
	cmake --build $(RELEASE) --target installed_files
	DESTDIR=$(DESTDIR) cmake --install $(RELEASE)

# The Debian packages qorvel, libqorvel0 and libqorvel-dev of the same files
# under /usr, left in build/package; built with debug information, stripped.
package: deps
	cmake -S . -B $(PACKAGE) $(CMAKE_GEN) -DCMAKE_BUILD_TYPE=RelWithDebInfo -DBUILD_TESTING=OFF \
		-DCMAKE_INSTALL_PREFIX=/usr
	cmake --build $(PACKAGE)
	cd $(PACKAGE) && cpack -G DEB

test: deps
	cmake -S . -B $(SANITIZED) $(CMAKE_GEN) -DCMAKE_BUILD_TYPE=Debug -DQORVEL_SANITIZE=ON
	cmake --build $(SANITIZED)
	ctest --test-dir $(SANITIZED) --output-on-failure -j2

fuzz: deps
	CC=clang CXX=clang++ cmake -S . -B $(FUZZ) $(CMAKE_GEN) -DCMAKE_BUILD_TYPE=RelWithDebInfo \
		-DQORVEL_FUZZ=ON -DBUILD_TESTING=OFF
	cmake --build $(FUZZ)
	scripts/run-fuzzers $(FUZZ)/fuzz $(FUZZ_SECONDS)

bench:
	@scripts/install-deps bench
	cmake -S . -B $(BENCH) $(CMAKE_GEN) -DCMAKE_BUILD_TYPE=Release -DQORVEL_BENCH=ON -DBUILD_TESTING=OFF
	cmake --build $(BENCH)
	scripts/run-benchmarks $(BENCH)

# 100,000 broker reads under LeakSanitizer: no leak, no growth of the peak.
# A small quarantine keeps freed blocks from hiding the program's own peak.
leak-check:
	@scripts/install-deps bench
	cmake -S . -B $(LEAK) $(CMAKE_GEN) -DCMAKE_BUILD_TYPE=Debug -DQORVEL_SANITIZE=ON -DQORVEL_BENCH=ON \
		-DBUILD_TESTING=OFF
	cmake --build $(LEAK) --target read_loop
	ASAN_OPTIONS=quarantine_size_mb=1 $(LEAK)/bench/read_loop 100000

clean:
	rm -rf $(BUILD)
