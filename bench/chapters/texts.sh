# Read by bench/run: the same model in other forms of text.
# shellcheck shell=sh disable=SC2154

# text_goals FORM TEXT [OPTION]: a form of 100000 vertices against the plain form.
text_goals() {
    "$tools/make_model" ${3:+"$3"} 100000 plain
    "$tools/make_model" ${3:+"$3"} -f "$1" 100000 other
    compare 31 "$program" -o plain.tmd plain.rsd + "$program" -o other.tmd other.rsd
    same plain.tmd other.tmd
    ratio_goals "$2" 1.4
}

heading "forms of the text: the time of 100000 vertices by that of the same in plain text"
text_goals columns "aligned columns, MAT in four ranges"
text_goals columns "aligned columns, MAT in one line each" -e
text_goals crlf "CR LF, MAT in four ranges"
text_goals crlf "CR LF, MAT in one line each" -e
text_goals exponent "exponents, MAT in four ranges"
rm plain.* other.*
