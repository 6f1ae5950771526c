# The front door. Everything here is a thin wrapper around CMake; see CMakePresets.json.
#
#   make run [ARGS="--snapshot FILE.png --dump FILE.txt PATH"]   builds and runs the example that shows a folder
#   make run EXAMPLE=Contacts ARGS=people.json                   another one: names and addresses in a file
#   make test                                                    builds everything, runs all checks and tests
#   make bench                                                   builds and runs the benchmarks
#   make asan | make tsan                                        the tests under sanitizers
#   make lint | make format                                      checks the style | applies it
#   make install [PREFIX=/usr/local] [DESTDIR=]                  headers, libraries, CMake and pkg-config files
#   make help                                                    this text

# Where this file is, seen from the folder in which make runs: ./ as a rule. The example runs in the latter,
# so relative paths in ARGS mean what they mean to whoever typed them (make -f elsewhere/Makefile run, too).
ROOT := $(dir $(lastword $(MAKEFILE_LIST)))

EXAMPLE ?= FolderSizes
ARGS ?=
PREFIX ?= /usr/local
DESTDIR ?=
JOBS ?= $(shell nproc)

# Without address randomisation, where one may switch it off: the thread sanitizer of Debian 12's compiler gives up
# on kernels that scatter mappings more widely than it expects.
UNSCATTERED = $(shell setarch -R true 2>/dev/null && echo setarch -R)

.PHONY: help run test bench asan tsan lint format install configure-release configure-asan configure-tsan

help:
	@sed -n 's/^#   //p' "$(ROOT)Makefile"

run: configure-release
	@cmake --build "$(ROOT)build/release" -j $(JOBS) --target $(EXAMPLE)
	@"$(ROOT)build/release/bin/$(EXAMPLE)" $(ARGS)

# The second target compiles every public header alone.
test: configure-release
	@cmake --build "$(ROOT)build/release" -j $(JOBS) --target all all_verify_interface_header_sets
	@cd "$(ROOT)" && ctest --preset release
	@awk -F: '/^oracle:/ { count[$$2] += $$3; all += $$3 } END { print all " random systems agreed with the oracle:"; \
		for (kind in count) print "  " count[kind] " " kind | "sort -k2" }' \
		"$(ROOT)build/release/Testing/Temporary/LastTest.log"

bench: configure-release
	@cmake --build "$(ROOT)build/release" -j $(JOBS) --target Benchmarks
	@"$(ROOT)build/release/bin/Benchmarks"

asan: configure-asan
	@cmake --build "$(ROOT)build/asan" -j $(JOBS)
	@cd "$(ROOT)" && ctest --preset asan

tsan: configure-tsan
	@$(UNSCATTERED) cmake --build "$(ROOT)build/tsan" -j $(JOBS)
	@cd "$(ROOT)" && $(UNSCATTERED) ctest --preset tsan

lint: configure-release
	@"$(ROOT)Scripts/install-dependencies" --lint
	@"$(ROOT)Scripts/lint"

format:
	@"$(ROOT)Scripts/install-dependencies" --lint
	@cd "$(ROOT)" && Scripts/list-sources | xargs clang-format-16 -i

install: configure-release
	@cmake -S "$(ROOT)" -B "$(ROOT)build/release" -D CMAKE_INSTALL_PREFIX="$(PREFIX)" >/dev/null
	@cmake --build "$(ROOT)build/release" -j $(JOBS)
	@DESTDIR="$(DESTDIR)" cmake --install "$(ROOT)build/release"

# Quiet unless it fails; what goes wrong is on standard error.
configure-release configure-asan configure-tsan: configure-%:
	@"$(ROOT)Scripts/install-dependencies"
	@cd "$(ROOT)" && cmake --preset $* >/dev/null
