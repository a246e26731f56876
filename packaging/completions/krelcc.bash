# Completion of krelcc for bash: dump options and programs. Stands on the package bash-completion,
# which loads it.

_krelcc() {
    local cur prev words cword
    _init_completion || return
    if [[ $prev == -o ]]; then
        _filedir
    elif [[ $cur == -* ]]; then
        COMPREPLY=($(compgen -W "-o --ast-dump --ast-semantic-dump --ir-dump --asm-dump" \
            -- "$cur"))
    else
        _filedir krl
    fi
}

complete -F _krelcc krelcc
