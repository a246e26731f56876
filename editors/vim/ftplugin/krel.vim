" Settings for programs in Krel.

if exists('b:did_ftplugin')
  finish
endif
let b:did_ftplugin = 1

let s:options = &cpoptions
set cpoptions&vim

setlocal expandtab shiftwidth=4 softtabstop=4
setlocal comments=:# commentstring=#\ %s
setlocal formatoptions-=t formatoptions+=croql
setlocal suffixesadd=.krl
compiler krel

let b:undo_ftplugin = 'setlocal expandtab< shiftwidth< softtabstop< comments< commentstring<'
      \ . ' formatoptions< suffixesadd< makeprg< errorformat<'

let &cpoptions = s:options
unlet s:options
