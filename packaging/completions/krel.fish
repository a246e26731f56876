# Completion of krel for fish: commands, options and their values, programs, names of rules.

complete -c krel -f
complete -c krel -n __fish_use_subcommand -a run -d 'Compile a program and run it'
complete -c krel -n __fish_use_subcommand -a build -d 'Compile a program to an executable'
complete -c krel -n __fish_use_subcommand -a check -d 'Find what is wrong, and repair it'
complete -c krel -n __fish_use_subcommand -a fmt -d 'Lay programs out in the one style'
complete -c krel -n __fish_use_subcommand -a explain -d 'Tell more about a finding or a message'
complete -c krel -n __fish_use_subcommand -a debug -d 'Run a program step by step'
complete -c krel -n __fish_use_subcommand -a lsp -d 'Serve an editor'
complete -c krel -n __fish_use_subcommand -a help -d 'Show the help'
complete -c krel -n __fish_use_subcommand -l version -d 'Show the version'
complete -c krel -s h -l help -d 'Show the help'

set -l programs '__fish_seen_subcommand_from run build check fmt debug'
complete -c krel -n $programs -k -a '(__fish_complete_suffix .krl)'

set -l native '__fish_seen_subcommand_from run build'
complete -c krel -n $native -l native -x -a 'own system' -d 'Who assembles and links'
set -l run '__fish_seen_subcommand_from run'
complete -c krel -n $run -l checked -d 'Stop at the first fault'
complete -c krel -n $run -l allow -x -d 'Let the faults of a rule pass'
complete -c krel -n $run -l limit -x -d 'Stop after so many steps'
complete -c krel -n $run -l trace -d 'Show each line that runs'
complete -c krel -n $run -l profile -d 'Show how often each line has run'
complete -c krel -n $run -l coverage -r -F -d 'Write the same for lcov'
complete -c krel -n '__fish_seen_subcommand_from build' -s o -r -F -d 'Name the executable'

set -l check '__fish_seen_subcommand_from check'
complete -c krel -n $check -l fix -d 'Repair programs that are refused'
complete -c krel -n $check -a --fix=all -d 'Repair surprises, too'
complete -c krel -n $check -l diff -d 'Show the repairs'
complete -c krel -n $check -l hints -d 'Show guesses, too'
complete -c krel -n $check -l format -x -a 'text json sarif' -d 'How findings are written'
complete -c krel -n $check -l color -x -a 'always never auto' -d 'Whether to write colours'

complete -c krel -n '__fish_seen_subcommand_from fmt' -l check -d 'List the files that would change'

set -l debug '__fish_seen_subcommand_from debug'
complete -c krel -n $debug -l tty -d 'Take commands from standard input'
complete -c krel -n $debug -l allow -x -d 'Let the faults of a rule pass'

complete -c krel -n '__fish_seen_subcommand_from explain' \
    -a '(command krel explain 2>/dev/null | string replace -r "  +" \t)' -d Rule
complete -c krel -n '__fish_seen_subcommand_from help' \
    -a 'run build check fmt explain debug lsp help'
