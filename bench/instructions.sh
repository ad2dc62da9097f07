# Read by bench/run: the instructions of the program for each byte of its input, which no other load of the
# machine changes, and their comparison with those of bench/instructions.
# shellcheck shell=sh disable=SC2154

record=$root/bench/instructions

# toolchain: the compiler, its major version and the machine, which all decide about the instructions.
toolchain() {
    compiler=$(sed -n 's/^CMAKE_CXX_COMPILER:[A-Z]*=//p' "$root/build/release/CMakeCache.txt")
    "$compiler" -dM -E -x c++ /dev/null | awk -v machine="$(uname -m)" '
        $2 == "__clang__" { name = "clang++" }
        $2 == "__GNUC__" { gnu = $3 }
        $2 == "__clang_major__" { clang = $3 }
        END { print name == "" ? "g++-" gnu "-" machine : name "-" clang "-" machine }'
}

# count NAME COUNT "OPTION ..." "OPTION ...": the instructions for a model of COUNT vertices that make_model
# makes with the first options, converted with the others.
count() {
    # The options are split into words.
    # shellcheck disable=SC2086
    {
        "$tools/make_model" $3 "$2" model
        valgrind --tool=callgrind --callgrind-out-file=/dev/null "$program" $4 -o model.tmd model.rsd \
            >printed 2>words || give_up "$(cat words)"
    }
    awk -v name="$1" -v bytes="$(cat model.rsd model.ply model.mat | wc -c)" '
        $2 == "Collected" { printf "%s %.2f\n", name, $4 / bytes; found = 1 }
        END { exit !found }' words || give_up "callgrind does not say how many"
}

count_all() {
    echo "toolchain $(toolchain)"
    count ranges 20000 "" ""
    count each 20000 "-e" ""
    count columns 20000 "-f columns" ""
    count crlf 20000 "-f crlf" ""
    count exponent 20000 "-f exponent" ""
    count info 2000 "" "-info"
}

record_instructions() {
    count_all >counted
    cp counted "$record"
    cat "$record"
}

quick_instructions() {
    heading "instructions for each byte of input"
    grep -qs '^toolchain ' "$record" || give_up "nothing is recorded; bench/run --record does it"
    count_all >counted
    awk '
        function fail(name, text) {
            printf "%-12s FAILED: %s\n", name, text
            failed = 1
        }
        FNR == NR { recorded[$1] = $2; next }
        $1 == "toolchain" {
            compared = $2 == recorded[$1]
            if (!compared) print "not compared: recorded with " recorded[$1] ", counted with " $2
            delete recorded[$1]
            printf "%-12s %9s %9s %9s\n", "", "recorded", "counted", "change"
            next
        }
        !compared { printf "%-12s %9s %9.2f\n", $1, "", $2; next }
        !($1 in recorded) { fail($1, "not recorded"); next }
        {
            change = 100 * ($2 / recorded[$1] - 1)
            printf "%-12s %9.2f %9.2f %+8.1f%%\n", $1, recorded[$1], $2, change
            if (change > 10) fail($1, "more than 10 % up")
            delete recorded[$1]
        }
        END {
            if (compared) for (name in recorded) fail(name, "not counted")
            exit failed
        }' "$record" counted
}
