# Completion of krelcc for fish.

complete -c krelcc -k -a '(__fish_complete_suffix .krl)'
complete -c krelcc -s o -r -F -d 'Name the executable'
complete -c krelcc -l ast-dump -d 'Write the syntax tree'
complete -c krelcc -l ast-semantic-dump -d 'Write the tree with types'
complete -c krelcc -l ir-dump -d 'Write the intermediate code'
complete -c krelcc -l asm-dump -d 'Write the assembly'
