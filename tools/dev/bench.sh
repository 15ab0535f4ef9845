#!/bin/bash
# ./dev bench [--quick] [NAME...]: NAME without the leading bench_. A benchmark prints one line for each budget:
# BUDGET <name> <value> <limit> ok|MISS. The short form goes once through every path and gives no verdict; it
# fails when a benchmark does not run or measures nothing.
. "$(dirname "$0")/common.sh"

benchmarks() { ninja -C build/release -t targets all | sed -n 's/^\(bench_[a-z0-9_]*\): phony$/\1/p'; }

if [ "${1:-}" = --quick ]; then
    export BENCH_QUICK=1
    shift
fi
tools/dev/setup.sh
configure release
names=("${@/#/bench_}")
[ $# -gt 0 ] || mapfile -t names < <(benchmarks)
[ ${#names[@]} -gt 0 ] || die "the build has no benchmark"
build release "${names[@]}"

budgets=0 missed=0
for name in "${names[@]}"; do
    say "$name"
    output=$("build/release/bin/$name") || die "$name failed: $output"
    lines=$(grep '^BUDGET ' <<<"$output") || die "$name printed no budget"
    echo "$lines"
    budgets=$((budgets + $(wc -l <<<"$lines")))
    missed=$((missed + $(grep -c ' MISS$' <<<"$lines" || true)))
done
say "$budgets budgets, $missed missed"
((missed == 0))
