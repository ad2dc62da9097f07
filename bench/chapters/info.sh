# Read by bench/run: the report of -info against the printing alone.
# shellcheck shell=sh disable=SC2154

heading "-info on 100000 triangles, and bench/print_info.cpp, which only prints the same lines"
"$tools/make_model" 50000 model
convert -o model.tmd model.rsd
compare 21 "$tools/print_info" model.tmd model + "$program" -info -o a.tmd model.rsd
same printed.1 printed.2
plain_figure "wall time of the conversion" "$(awk -v wall="$(figure 2 wall)" 'BEGIN { print 1e3 * wall }')" ms
ratio_goals "time by that of the printing" 1.5
rm model.* a.tmd
