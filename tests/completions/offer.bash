# Prints what bash offers at the end of each command line on the standard input: the line after "> ", then the
# candidates, one per line, in the way that shows what the options do; a folder's name ends in "/".
#   bash --norc --noprofile offer.bash COMPLETIONS
# The words of the lines are parted by single spaces.
set -u
completions=$1
# The package's own sources read variables that are not set.
set +u
# shellcheck source=/dev/null
. /usr/share/bash-completion/bash_completion
# shellcheck source=/dev/null
. "$completions/vexbind.bash"
complete -p vexbind >&2 || exit 1

# Known only while a key is handled; it tells that the candidates are file names.
compopt() {
    files=yes
}

while IFS= read -r line; do
    echo "> $line|"
    IFS=' ' read -r -a COMP_WORDS <<<"$line"
    if [[ $line == *' ' ]]; then
        COMP_WORDS+=('')
    fi
    COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
    COMP_LINE=$line
    COMP_POINT=${#line}
    COMP_KEY=9
    COMP_TYPE=63
    COMPREPLY=()
    files=no
    _vexbind vexbind "${COMP_WORDS[COMP_CWORD]}" "${COMP_WORDS[COMP_CWORD - 1]}"
    for each in "${COMPREPLY[@]}"; do
        if [[ $files == yes && -d $each ]]; then
            each+=/
        fi
        echo "$each"
    done | sed 's/^\(-[a-z]*\)  */\1\t/'
done
