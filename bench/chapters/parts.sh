# Read by bench/run: the parts of the program, each for itself.
# shellcheck shell=sh disable=SC2154

heading "the parts"
"$tools/parts_bench" --benchmark_min_time=0.5
