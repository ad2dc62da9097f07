# Prints what fish offers at the end of each command line on the standard input: the line after "> ", then the
# candidates, one per line, with what the options do behind a tab.
#   fish --no-config offer.fish COMPLETIONS
source $argv[1]/vexbind.fish

while read --line line
    echo "> $line|"
    complete -C $line
end
