" :make lists what krel check says of the program; krelcc's own messages are understood, too.

if exists('current_compiler')
  finish
endif
let current_compiler = 'krel'

let s:options = &cpoptions
set cpoptions&vim

let s:check = shellescape(get(g:, 'krel_command', 'krel')) . ' check %:p:S'
execute 'CompilerSet makeprg=' . escape(s:check, ' \|"')

CompilerSet errorformat=%f:%l:%c:\ %trror:\ %m,
      \%f:%l:%c:\ %tarning:\ %m,
      \%f:%l:%c:\ hint:\ %m,
      \%\\w%\\+\ error\ in\ %f\ at\ line\ %l:\ %m,
      \%-G%.%#

let &cpoptions = s:options
unlet s:options
