# Prints what zsh offers at the end of each command line on the standard input: the line after "> ", then the
# candidates, one per line, with what the options do behind a tab.
#   zsh -f offer.zsh COMPLETIONS
# zsh completes only where it edits a line, so another one edits on a pseudo terminal and writes down what its
# completion adds.
zmodload zsh/zpty || exit 1

work=$(mktemp -d) || exit 1
cat >$work/lines
: >$work/offered

cat >$work/.zshrc <<END
PS1=
COLUMNS=200
fpath=(${(q)1:a} \$fpath)
work=${(q)work}
END
cat >>$work/.zshrc <<'END'
autoload -Uz compinit
compinit -u -d $work/dump
zmodload zsh/zutil

# Stands between the completions and the shell.
compadd() {
    local -a all=("$@") asked shown prefix others matches
    local each
    zparseopts -D -E -a others O:=asked A:=asked D:=asked d:=shown p:=prefix \
        W: J: V: X: x: P: S: s: i: I: r: R: F: M: E: o: a f q Q e n U k l C 1 2
    if (( ! $#asked )); then
        [[ -z $shown ]] || shown=("${(@P)shown[2]}")
        builtin compadd -A matches -D shown "${all[@]}"
        local -i i
        for (( i = 1; i <= $#matches; i++ )); do
            each=${(Q)prefix[2]}${(Q)matches[i]}
            [[ -z ${(M)others:#-f} || ! -d $each ]] || each+=/
            print -r -- "$each${shown[i]:+	${shown[i]#* -- }}"
        done >>$work/offered
    fi
    builtin compadd "${all[@]}"
}

offer() {
    _main_complete
    compstate[insert]=
    compstate[list]=
}
zle -C offer complete-word offer

offer_all() {
    local line
    while IFS= read -r line; do
        print -r -- "> $line|" >>$work/offered
        BUFFER=$line
        CURSOR=$#BUFFER
        zle offer
    done <$work/lines
    exit
}
zle -N offer_all
bindkey '^X' offer_all
print ready
END

{
    # The one that edits would run a trap of this one when it ends.
    zpty editor "ZDOTDIR=${(q)work} zsh -i"
    zpty -r editor greeting '*ready*' || exit 1
    zpty -w -n editor $'\C-x'
    # To its end.
    while zpty -r editor ignored; do
        print -rn -- $ignored >&2
    done
    cat $work/offered
} always {
    rm -rf $work
}
