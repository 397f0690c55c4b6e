# Thin front end: everything is built by CMake.
JOBS ?= $(shell nproc)
BUILD ?= build
ASAN_BUILD ?= build-asan
FUZZ_BUILD ?= build-fuzz

.PHONY: demo test deps build asan fuzz bench clean regenerate

demo: deps build
	./$(BUILD)/quickstart $(BUILD)/quickstart.xls
	./$(BUILD)/quickstart $(BUILD)/quickstart.xlsx
	./$(BUILD)/quickstart_c $(BUILD)/quickstart_c.xls

deps:
	bash tools/install-deps.sh

build:
	cmake -S . -B $(BUILD) -DCMAKE_BUILD_TYPE=RelWithDebInfo
	cmake --build $(BUILD) -j$(JOBS)

test: deps build
	ctest --test-dir $(BUILD) --output-on-failure -j$(JOBS)
	$(MAKE) asan

asan:
	cmake -S . -B $(ASAN_BUILD) -DCMAKE_BUILD_TYPE=Debug -DZELVAR_SANITIZE=ON -DZELVAR_BENCH=OFF
	cmake --build $(ASAN_BUILD) -j$(JOBS)
	ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
	  ctest --test-dir $(ASAN_BUILD) --output-on-failure -j$(JOBS)

fuzz: deps
	CC=clang CXX=clang++ cmake -S . -B $(FUZZ_BUILD) -DCMAKE_BUILD_TYPE=RelWithDebInfo -DZELVAR_FUZZ=ON
	cmake --build $(FUZZ_BUILD) -j$(JOBS)
	bash tools/run-fuzz.sh $(FUZZ_BUILD)

bench: deps
	cmake -S . -B build-bench -DCMAKE_BUILD_TYPE=Release -DZELVAR_TESTS=OFF
	cmake --build build-bench -j$(JOBS)

# Rewrites the schema-bound classes of source/ooxml from the schemas beside the repository.
SCHEMAS ?= ../shared/schemas
regenerate:
	python3 tools/gen_schema.py $(SCHEMAS) source/ooxml

clean:
	rm -rf $(BUILD) $(ASAN_BUILD) $(FUZZ_BUILD) build-bench
