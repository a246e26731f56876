" Indents programs in Krel as krel fmt does.

if exists('b:did_indent')
  finish
endif
let b:did_indent = 1

let s:options = &cpoptions
set cpoptions&vim

setlocal autoindent
setlocal indentexpr=KrelIndent(v:lnum)
setlocal indentkeys=0{,0},0),0],!^F,o,O
let b:undo_indent = 'setlocal autoindent< indentexpr< indentkeys<'

if exists('*KrelIndent')
  let &cpoptions = s:options
  finish
endif

" How far back an open bracket is looked for.
let s:farthest = 2000

function! s:GroupAt(number, column) abort
  return synIDattr(synID(a:number, a:column, 1), 'name')
endfunction

function! s:IsNoCode(number, column) abort
  return s:GroupAt(a:number, a:column) =~#
        \ '^krel\%(String\|Character\|Escape\|Comment\|BlockComment\|BracePair\|Todo\)$'
endfunction

function! s:IsInBlockComment(number) abort
  return a:number > 1 && s:GroupAt(a:number, 1) =~# '^krel\%(BlockComment\|BracePair\)$'
        \ && getline(a:number) !~# '^#{'
endfunction

" The place of the bracket that is open where the cursor is; [0, 0] if there is none.
function! s:OpenBracket() abort
  return searchpairpos('[([{]', '', '[])}]', 'bnW', 's:IsNoCode(line("."), col("."))',
        \ max([1, line('.') - s:farthest]))
endfunction

" The place of the last character of code before a place; [0, 0] if there is none.
function! s:CodeBefore(number, column) abort
  call cursor(a:number, a:column)
  while search('\S', 'bW', max([1, a:number - s:farthest]))
    if !s:IsNoCode(line('.'), col('.')) || s:GroupAt(line('.'), col('.')) =~# 'String\|Character'
      return [line('.'), col('.')]
    endif
  endwhile
  return [0, 0]
endfunction

function! s:CharacterAt(place) abort
  return a:place[0] == 0 ? '' : getline(a:place[0])[a:place[1] - 1]
endfunction

" The line where the statement or function begins whose block is opened at a place.
function! s:HeadOf(brace) abort
  let before = s:CodeBefore(a:brace[0], a:brace[1])
  if s:CharacterAt(before) !=# ')'
    return a:brace[0]
  endif
  call cursor(before)
  return s:OpenBracket()[0]
endfunction

function! s:IsBlock(brace) abort
  return s:CharacterAt(a:brace) ==# '{' && s:CharacterAt(s:CodeBefore(a:brace[0], a:brace[1])) !=# '='
endfunction

" Whether nothing but a comment is behind a bracket on its line.
function! s:IsLastOfLine(bracket) abort
  return getline(a:bracket[0])[a:bracket[1] :] =~# '^\s*\%(#.*\)\?$'
endfunction

" The indent of a line on which a list or an argument stands.
function! s:IndentInList(bracket, first) abort
  if a:first =~# '[])}]'
    return indent(a:bracket[0])
  endif
  if s:IsLastOfLine(a:bracket)
    return indent(a:bracket[0]) + shiftwidth()
  endif
  call cursor(a:bracket)
  return virtcol('.')
endfunction

" The indent of a line within a block, or of one outside of all functions.
function! s:IndentInBlock(number, brace, first) abort
  let outer = a:brace[0] == 0 ? 0 : indent(s:HeadOf(a:brace))
  if a:first ==# '}'
    return outer
  endif
  let inner = a:brace[0] == 0 ? 0 : outer + shiftwidth()
  let before = s:CharacterAt(s:CodeBefore(a:number, 1))
  return before =~# '^[;{}]\?$' || a:first =~# '[{#]' ? inner : inner + shiftwidth()
endfunction

" A comment under one that is behind code stays in its column.
function! s:ContinuesComment(number) abort
  let column = matchend(getline(a:number), '^\s*\ze#')
  return column > 0 && getline(a:number - 1)[column] ==# '#'
        \ && s:GroupAt(a:number - 1, column + 1) ==# 'krelComment'
        \ && getline(a:number - 1)[: column - 1] !~# '#'
endfunction

" The indent of a line; -1 leaves it as it is.
function! KrelIndent(number) abort
  if s:IsInBlockComment(a:number) || s:ContinuesComment(a:number)
    return -1
  endif
  let place = getpos('.')
  call cursor(a:number, 1)
  let bracket = s:OpenBracket()
  let first = matchstr(getline(a:number), '\S')
  let indent = bracket[0] == 0 || s:IsBlock(bracket)
        \ ? s:IndentInBlock(a:number, bracket, first)
        \ : s:IndentInList(bracket, first)
  call setpos('.', place)
  return indent
endfunction

let &cpoptions = s:options
unlet s:options
