# Completion of krel for bash: commands, options and their values, programs, names of rules. Stands
# on the package bash-completion, which loads it.

# The options of a command.
_krel_options() {
    case $1 in
        run) echo "--native --checked --allow --limit --trace --profile --coverage --help" ;;
        build) echo "-o --native --help" ;;
        check) echo "--fix --fix=all --diff --hints --format --color --help" ;;
        fmt) echo "--check --help" ;;
        debug) echo "--tty --allow --help" ;;
        *) echo "--help" ;;
    esac
}

# The values that an option can have; nothing for the others.
_krel_values() {
    case $1 in
        --native) echo "own system" ;;
        --format) echo "text json sarif" ;;
        --color) echo "always never auto" ;;
    esac
}

# The names of all rules.
_krel_rules() {
    "$1" explain 2>/dev/null | cut -d ' ' -f 1
}

# Whether a program has been named: what follows belongs to it.
_krel_has_program() {
    local word
    for word in "${words[@]:2:cword-2}"; do
        [[ $word != *.krl && $word != - ]] || return 0
    done
    return 1
}

_krel() {
    local cur prev words cword split
    _init_completion -s || return
    local commands="run build check fmt explain debug lsp help"
    local command=${words[1]} values
    values=$(_krel_values "$prev")
    if ((cword == 1)); then
        COMPREPLY=($(compgen -W "$commands --help --version" -- "$cur"))
    elif [[ $prev == --fix && $split == true ]]; then
        COMPREPLY=($(compgen -W "safe all" -- "$cur"))
    elif [[ -n $values ]]; then
        COMPREPLY=($(compgen -W "$values" -- "$cur"))
    elif [[ $prev == -o || $prev == --coverage ]] || { [[ $command == run ]] && _krel_has_program; }; then
        _filedir
    elif [[ $cur == -* ]]; then
        COMPREPLY=($(compgen -W "$(_krel_options "$command")" -- "$cur"))
    elif [[ $command == explain ]]; then
        COMPREPLY=($(compgen -W "$(_krel_rules "${words[0]}")" -- "$cur"))
    elif [[ $command == help ]]; then
        COMPREPLY=($(compgen -W "$commands" -- "$cur"))
    elif [[ $command != lsp ]]; then
        _filedir krl
    fi
}

complete -F _krel krel
