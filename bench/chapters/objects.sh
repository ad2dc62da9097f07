# Read by bench/run: many small objects in one run.
# shellcheck shell=sh disable=SC2154

# make_objects COUNT: objects of 9 vertices with names of their own, the lists of the first 10000 and of all,
# and the projects of as many, which name them the other way round.
make_objects() {
    mkdir objects
    "$tools/make_model" 9 nine
    awk -v count="$1" '
        function read_text(name,    text, line) {
            while ((getline line < name) > 0) text = text line "\n"
            close(name)
            return text
        }
        function write_text(name, text) {
            printf "%s", text > name
            close(name)
        }
        # The IDs stay within their 16 bits.
        function write_list(size,    i) {
            print "@PRJ940401\nnames and IDs" > (size ".prj")
            for (i = 1; i <= size; ++i) {
                printf "objects/part%06d.rsd\n", i > (size ".arg")
                printf "%d part%06d.rsd\n", i % 32000, size + 1 - i > (size ".prj")
            }
            close(size ".arg")
            close(size ".prj")
        }
        BEGIN {
            ply = read_text("nine.ply")
            mat = read_text("nine.mat")
            for (i = 1; i <= count; ++i) {
                name = sprintf("part%06d", i)
                write_text("objects/" name ".rsd", "@RSD940102\nPLY=" name ".ply\nMAT=" name ".mat\nNTEX=0\n")
                write_text("objects/" name ".ply", ply)
                write_text("objects/" name ".mat", mat)
            }
            write_list(10000)
            write_list(count)
        }'
}

# object_rows TEXT [PROJECT]: the time of either number of objects; with a second word, also with a project
# as long.
object_rows() {
    compare 5 "$program" ${2:+-id 10000.prj} -o few.tmd 10000.arg + \
        "$program" ${2:+-id 100000.prj} -o many.tmd 100000.arg
    plain_figure "10000 $1: wall time of one" "$(microseconds 1 wall 10000)" us
    plain_figure "   in CPU time" "$(microseconds 1 cpu 10000)" us
    plain_figure "100000 $1: wall time of one" "$(microseconds 2 wall 100000)" us
    plain_figure "   in CPU time" "$(microseconds 2 cpu 100000)" us
    ratio_goals "time of 100000 by that of 10000" 11
}

# microseconds COMMAND KIND COUNT: of one object among COUNT, by the last comparison.
microseconds() {
    awk -v seconds="$(figure "$1" "$2")" -v count="$3" 'BEGIN { print 1e6 * seconds / count }'
}

heading "small objects with files of their own, 9 vertices and 18 triangles each"
make_objects 100000
object_rows "named by an ARG file"
echo
object_rows "that have IDs by a PRJ file" project
matched=$(grep -c '^.[0-9]*,./\* part[0-9]* \*/$' many.h)
[ "$matched" -eq 100000 ] || give_up "the project matches only $matched objects"
rm -r objects nine.* ./*.arg ./*.prj few.* many.*
