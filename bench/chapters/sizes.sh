# Read by bench/run: models of several sizes against the floor of bench/floor.cpp.
# shellcheck shell=sh disable=SC2154

# size_row LABEL ROUNDS BASE...: measures the conversion of the models into one TMD.
size_row() {
    label=$1
    rounds=$2
    shift 2
    names=
    texts=
    for base in "$@"; do
        names="$names $base.rsd"
        texts="$texts $base.rsd $base.ply $base.mat"
    done
    # The names have no blanks.
    # shellcheck disable=SC2086
    {
        bytes=$(cat $texts | wc -c)
        convert -o a.tmd $names
        compare "$rounds" "$tools/floor" -o floor.out "$(wc -c <a.tmd)" $texts + "$program" -o a.tmd $names
    }
    awk -v label="$label" -v bytes="$bytes" 'NR == 2 {
        printf "%-32s %8.2f %8.2f %8.2f %8.1f %9.1f %9.2f %9.2f\n", label, bytes / 1e6, 1e3 * $1, 1e3 * $2,
            bytes / 1e6 / $1, $3, $4, $5
    }' figures
}

# size_rows NAME TEXT PEAK [OPTION]: the sizes of one object with its materials written in one way, and in
# the file goals what became of its goals. The largest TMD stays as NAME.tmd.
size_rows() {
    for count in 10000 100000 1000000; do
        "$tools/make_model" ${4:+"$4"} $count "$1$count"
    done
    size_row "10000, $2" 41 "${1}10000"
    size_row "100000, $2" 21 "${1}100000"
    size_row "1000000, $2" 9 "${1}1000000"
    mv a.tmd "$1.tmd"
    {
        # The floor only skims over the numbers of a line: the goal is for one kind of them.
        [ "$1" != ranges ] || ratio_goals "time of 1000000 by the floor's, $2" 3.4
        goal "peak memory of 1000000, $2" "$(figure 2 peak)" "$3" MiB
        # Each has a file of its own: the shorter run should not have to clear away what the longer wrote.
        compare 9 "$program" -o few.tmd "${1}100000.rsd" + "$program" -o many.tmd "${1}1000000.rsd"
        ratio_goals "time of 1000000 by that of 100000, $2" 10.5
    } >>goals
    rm "$1"1*
}

heading "models with two triangles for each vertex, and a floor that reads the same files in blocks," \
    "finds their lines and writes as many bytes"
printf '%-32s %8s %8s %8s %8s %9s %9s %9s\n' \
    "vertices, MAT" "text MB" "wall ms" "CPU ms" "MB/s" "peak MiB" "by floor" "in CPU"
size_rows ranges "four ranges" 94
size_rows each "one line each" 125 -e
same ranges.tmd each.tmd

twenty=
for i in 01 02 03 04 05 06 07 08 09 10 11 12 13 14 15 16 17 18 19 20; do
    "$tools/make_model" 50000 "part$i"
    twenty="$twenty part$i"
done
# shellcheck disable=SC2086
size_row "20 objects of 50000, four ranges" 9 $twenty
echo
cat goals
rm goals part* ./*.tmd
