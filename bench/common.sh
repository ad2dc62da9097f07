# Read by bench/run: building, the scratch folder, measuring, and the lines of the tables.
# shellcheck shell=sh disable=SC2154

root=$PWD
program=$root/build/release/vexbind
tools=$root/build/bench/bench
missed=0 # goals

usage() {
    echo "usage:" >&2
    sed -n 's/^#   bench/  bench/p' bench/run >&2
    exit 2
}

give_up() {
    echo "bench/run: $*" >&2
    exit 1
}

# build_tools TARGET: the programs that measure, in a build folder of their own.
build_tools() {
    cmake --preset release -B build/bench -DVEXBIND_BENCH=ON -DVEXBIND_TESTS=OFF
    cmake --build build/bench -j "$jobs" --target "$1"
}

# Makes the folder for inputs and outputs, in memory where there is room for them, and goes there.
make_scratch() {
    shared=/dev/shm
    room=$(df -Pk $shared 2>/dev/null | awk 'NR == 2 { print $4 }')
    if [ ! -w $shared ] || [ "${room:-0}" -lt 2500000 ]; then
        shared=$root/build
    fi
    scratch=$(mktemp -d "$shared/vexbind-bench.XXXXXX")
    trap 'rm -rf "$scratch"' EXIT
    trap 'exit 1' HUP INT TERM
    cd "$scratch" || exit
}

heading() {
    printf '\n== %s\n\n' "$*"
}

# convert WORD...: one conversion whose time does not count.
convert() {
    "$program" "$@" >printed 2>words || give_up "$(cat words)"
}

# same FILE FILE: the measured programs did the same.
same() {
    cmp "$1" "$2" || give_up "$1 and $2 should be the same"
}

# compare ROUNDS COMMAND [+ COMMAND ...]: runs the commands in turns; takes their figures for `figure`.
compare() {
    rounds=$1
    shift
    "$tools/measure" "$rounds" printed "$@" >figures 2>words || give_up "$(cat words)"
}

# figure COMMAND KIND: what the last comparison found for its first, second ... command: its wall or cpu
# seconds, its peak in MiB, or its times relative to those of the first command.
figure() {
    awk -v line="$1" -v kind="$2" '
        BEGIN { split("wall cpu peak wall_ratio cpu_ratio", kinds, " ") }
        NR == line { for (i in kinds) if (kinds[i] == kind) print $i }' figures
}

# goal LABEL FIGURE LIMIT [UNIT]: a line with a figure and the most that it should be.
goal() {
    if ! awk -v figure="$2" -v limit="$3" -v label="$1" -v unit="${4:-}" 'BEGIN {
        good = figure <= limit
        printf "%-66s %8.2f %-4s goal: %g%s\n", label, figure, unit, limit, good ? "" : ", MISSED"
        exit !good
    }'; then
        missed=$((missed + 1))
    fi
}

# ratio_goals LABEL LIMIT: the times of the last comparison's second command relative to those of the first.
# The goal is meant for the wall clock; the CPU time says how much of it is the machine's doing.
ratio_goals() {
    goal "$1" "$(figure 2 wall_ratio)" "$2"
    plain_figure "   in CPU time" "$(figure 2 cpu_ratio)"
}

# plain_figure LABEL FIGURE [UNIT]: a line with a figure that has no goal.
plain_figure() {
    printf '%-66s %8.2f %s\n' "$1" "$2" "${3:-}"
}

say_missed() {
    echo
    if [ $missed -eq 0 ]; then
        echo "all goals are reached"
    else
        echo "goals missed: $missed (on a busy machine, look at the CPU times)"
    fi
}
