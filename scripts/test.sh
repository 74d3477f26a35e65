#!/usr/bin/env bash
# The one test command: installs what is missing, builds and runs every test in the debug
# build (core and offscreen widget tests) and the core tests under the sanitizers, runs each
# fuzz target briefly, then checks the formatting of our sources.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/bootstrap.sh

export QT_QPA_PLATFORM=offscreen
# Building uses both cores; ctest runs the tests two at a time.
export CMAKE_BUILD_PARALLEL_LEVEL="${CMAKE_BUILD_PARALLEL_LEVEL:-2}"
export CTEST_PARALLEL_LEVEL="${CTEST_PARALLEL_LEVEL:-2}"

echo "== debug: build and run every test"
cmake --workflow --preset debug

echo "== asan: core tests under AddressSanitizer and UndefinedBehaviorSanitizer"
cmake --workflow --preset asan

echo "== fuzz: every target for a short run (QUIRNEL_FUZZ_SECONDS each, default 30)"
bash scripts/fuzz.sh "${QUIRNEL_FUZZ_SECONDS:-30}"

echo "== formatting"
git ls-files -z -- '*.cpp' '*.h' | xargs -0 -r clang-format --dry-run --Werror
echo "formatting: clean"
