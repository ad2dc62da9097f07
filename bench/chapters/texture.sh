# Read by bench/run: a large texture, whose data the program only reads over.
# shellcheck shell=sh disable=SC2154

# make_textured NAME: a quadrangle with a texture of 4096 x 4096 texels of 16 bits and of any colours.
make_textured() {
    printf '@RSD940102\nPLY=%s.ply\nMAT=%s.mat\nNTEX=1\nTEX[0]=%s.tim\n' "$1" "$1" "$1" >"$1.rsd"
    printf '@PLY940102\n4 1 1\n0 0 0\n99 0 0\n0 99 0\n99 99 0\n0 0 -1\n1 0 1 2 3 0 0 0 0\n' >"$1.ply"
    printf '@MAT940102\n1\n0 0 F T 0 0 0 255 0 0 255 255 255\n' >"$1.mat"
    {
        # The stamp, no CLUT; the length of the block, the place and the size of the image.
        printf '\020\0\0\0\002\0\0\0\014\0\0\002\0\0\0\0\0\020\0\020'
        head -c $((4096 * 4096 * 2)) /dev/urandom
    } >"$1.tim"
}

heading "a texture of 4096 x 4096 texels of 16 bits"
make_textured large
compare 31 "$tools/floor" large.tim + "$program" -o a.tmd large.rsd
plain_figure "wall time of the conversion" "$(awk -v wall="$(figure 2 wall)" 'BEGIN { print 1e3 * wall }')" ms
ratio_goals "time by that of reading the file in blocks" 1.5
rm large.* a.tmd
