# Completion of vexbind's words for fish.

# Option, the number of words behind it, and what it does.
set -g __vexbind_options \
    '-o 1 the output file; a.tmd without it' \
    '-s 1 scale by the power of two that is not below the factor' \
    '-sc 1 the same as -s' \
    '-sa 1 scale by exactly this factor' \
    '-t 3 translate, in whole model units after scaling' \
    '-info 0 list the objects and every packet on the standard output' \
    '-v 0 progress on the standard error, a summary on the standard output, indices checked' \
    '-id 1 write an ID list by this PRJ file' \
    '-a 0 lay out texture addresses for the arcade targets, layout A' \
    '-b 0 lay out texture addresses for the arcade targets, layout B' \
    '-help 0 print the help text'

# Those that are known between names too.
set -g __vexbind_between -s -sa -t

# The files whose extension is one of these, in any letter case, and folders.
function __vexbind_files
    set -l extensions (string join '|' $argv)
    set -l word (commandline -ct)
    complete -C "__fish_command_without_completions $word" | string match -ri '.*(?:/|\.(?:'$extensions'))(?=\t|$).*'
end

# Whether the option is known behind names, if `yes`, or in front of them.
function __vexbind_knows -a option named
    test $named = no; or contains -- $option $__vexbind_between
end

function __vexbind_complete
    # Goes through the words before: which option still waits for values, and is there a name?
    set -l words (commandline -opc)
    set -l pending
    set -l waiting 0
    set -l named no
    for word in (string lower -- $words[2..])
        if test $waiting -gt 0
            set waiting (math $waiting - 1)
        else if string match -q -- '-*' $word
            for each in $__vexbind_options
                set -l parts (string split -m 2 ' ' -- $each)
                if test "$word" = $parts[1]; and __vexbind_knows $parts[1] $named
                    set pending $parts[1]
                    set waiting $parts[2]
                end
            end
        else if not string match -q '*.arg' -- $word
            # An ARG file may hold nothing but options.
            set named yes
        end
    end

    # The program takes extensions in any letter case.
    if test $waiting -gt 0
        switch $pending
            case -o
                __vexbind_files tmd
            case -id
                __vexbind_files prj
        end
    else if string match -q -- '-*' (commandline -ct)
        for each in $__vexbind_options
            set -l parts (string split -m 2 ' ' -- $each)
            if __vexbind_knows $parts[1] $named
                printf '%s\t%s\n' $parts[1] $parts[3]
            end
        end
    else if test $named = yes
        # A project belongs in front of any other name.
        __vexbind_files rsd arg
    else
        __vexbind_files rsd arg prj
    end
end

complete -c vexbind -f -a '(__vexbind_complete)'
