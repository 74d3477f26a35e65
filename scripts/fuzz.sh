#!/usr/bin/env bash
# Builds the fuzz preset (clang, libFuzzer, AddressSanitizer, UndefinedBehaviorSanitizer) and
# runs every fuzz target for SECONDS each (default 60), starting from the seed files in
# fuzz/corpus/. Prints the executions per target and exits non-zero when any target crashed;
# the input that did it is kept under build/fuzz/crashes/<target>/ to become a regression test.
#
#     scripts/fuzz.sh [SECONDS]
set -euo pipefail
cd "$(dirname "$0")/.."

seconds="${1:-60}"
case "$seconds" in
    '' | *[!0-9]*)
        echo "usage: scripts/fuzz.sh [SECONDS]" >&2
        exit 2
        ;;
esac

bash scripts/bootstrap.sh

targets=(fuzz_loader fuzz_record_reader fuzz_round_trip fuzz_settings_file fuzz_file_history)
targets+=(fuzz_graph_settings)
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz --target "${targets[@]}"

failed=0
for target in "${targets[@]}"; do
    seeds="fuzz/corpus/${target#fuzz_}"
    # New inputs go to a scratch corpus under build/, so the seeds in the repository stay few.
    work="build/fuzz/corpus/$target"
    crashes="build/fuzz/crashes/$target"
    log="build/fuzz/$target.log"
    mkdir -p "$work" "$crashes"
    status=ok
    if ! "build/fuzz/fuzz/$target" -max_total_time="$seconds" -print_final_stats=1 \
        -timeout=10 -rss_limit_mb=2048 -artifact_prefix="$crashes/" \
        "$work" "$seeds" >"$log" 2>&1; then
        status="CRASH (see $log and $crashes/)"
        failed=1
    fi
    runs=$(awk '/^stat::number_of_executed_units:/ { print $2 }' "$log" | tail -n 1)
    echo "$target: ${runs:-0} executions in ${seconds} s: $status"
done
exit "$failed"
