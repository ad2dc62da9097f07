# Completion of vexbind's words for bash, loaded by the package bash-completion.
# shellcheck shell=bash

# Option, the number of words behind it, and what it does.
_vexbind_options=(
    '-o 1 the output file; a.tmd without it'
    '-s 1 scale by the power of two that is not below the factor'
    '-sc 1 the same as -s'
    '-sa 1 scale by exactly this factor'
    '-t 3 translate, in whole model units after scaling'
    '-info 0 list the objects and every packet on the standard output'
    '-v 0 progress on the standard error, a summary on the standard output, indices checked'
    '-id 1 write an ID list by this PRJ file'
    '-a 0 lay out texture addresses for the arcade targets, layout A'
    '-b 0 lay out texture addresses for the arcade targets, layout B'
    '-help 0 print the help text'
)

# Those that are known between names too.
_vexbind_between=' -s -sa -t '

# The options that begin with the word; those between names if there is a name before it.
_vexbind_complete_options() {
    local word=${1,,} named=$2 each option values text
    local -a options=() texts=()
    for each in "${_vexbind_options[@]}"; do
        read -r option values text <<<"$each"
        if [[ $option == "$word"* && ($named == no || $_vexbind_between == *" $option "*) ]]; then
            options+=("$option")
            texts+=("$(printf '%-5s  %s' "$option" "$text")")
        fi
    done
    # What each does is shown where the candidates are only listed.
    if [[ ${COMP_TYPE-9} == 63 && ${#options[@]} -gt 1 ]]; then
        COMPREPLY=("${texts[@]}")
    else
        COMPREPLY=("${options[@]}")
    fi
}

_vexbind() {
    # Set by _init_completion.
    # shellcheck disable=SC2034
    local cur prev words cword
    _init_completion -n := || return

    # Goes through the words before: which option still waits for values, and is there a name?
    local index word each option values rest pending='' waiting=0 named=no
    for ((index = 1; index < cword; index++)); do
        word=${words[index],,}
        if ((waiting > 0)); then
            ((--waiting))
        elif [[ $word == -* ]]; then
            for each in "${_vexbind_options[@]}"; do
                read -r option values rest <<<"$each"
                if [[ $word == "$option" && ($named == no || $_vexbind_between == *" $option "*) ]]; then
                    pending=$option
                    waiting=$values
                fi
            done
        elif [[ $word != *.arg ]]; then
            # An ARG file may hold nothing but options.
            named=yes
        fi
    done

    # The program takes extensions in any letter case.
    if ((waiting > 0)); then
        case $pending in
        -o) _filedir '@([tT][mM][dD])' ;;
        -id) _filedir '@([pP][rR][jJ])' ;;
        esac
    elif [[ $cur == -* ]]; then
        _vexbind_complete_options "$cur" "$named"
    elif [[ $named == yes ]]; then
        # A project belongs in front of any other name.
        _filedir '@([rR][sS][dD]|[aA][rR][gG])'
    else
        _filedir '@([rR][sS][dD]|[aA][rR][gG]|[pP][rR][jJ])'
    fi
} &&
    complete -F _vexbind vexbind
