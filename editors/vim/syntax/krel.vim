" Colours of programs in Krel, by the rules of its scanner.

if exists('b:current_syntax')
  finish
endif

syntax case match

syntax keyword krelType boolean character double int string void
syntax keyword krelConditional if elseif else
syntax keyword krelRepeat while for
syntax keyword krelStatement break continue return
syntax keyword krelBuiltin exit print
syntax keyword krelBoolean false true

syntax match krelFunction /\<\h\w*\ze\s*(/
syntax match krelNumber /\<\d\+/
syntax match krelFloat /\<\d\+\.\d\+/

" Of several that match at a place, the last one counts.
syntax match krelIllegal /["'.%&|?:~^@$\\`]\|[^\x00-\x7f]/
syntax match krelOperator /[-+*/=<>!]\|[-+=<>!]=\|++\|--\|&&\|||/
syntax match krelDelimiter /[][(){},;]/

" A text that is not closed on its line is none.
syntax match krelEscape /\\./ contained
syntax match krelString /"\%([^"\\]\|\\.\)*"/ contains=krelEscape,@Spell
syntax match krelCharacter /'\%([^'\\]\|\\.\)\?'/ contains=krelEscape

syntax keyword krelTodo TODO FIXME XXX NOTE contained
syntax match krelComment /#.*$/ contains=krelTodo,@Spell
" A block that ends on its own line is a comment of the whole line. A brace and what is behind it are
" read together: two braces and # do not end the block.
syntax match krelBracePair /}\_[^#]/ contained
syntax region krelBlockComment start=/#{\%(\%([^}]\|}[^#]\)*}#\)\@!/ end=/}#/ contains=krelBracePair,krelTodo,@Spell
syntax sync ccomment krelBlockComment minlines=200

highlight default link krelType Type
highlight default link krelConditional Conditional
highlight default link krelRepeat Repeat
highlight default link krelStatement Statement
highlight default link krelBuiltin Function
highlight default link krelFunction Function
highlight default link krelBoolean Boolean
highlight default link krelNumber Number
highlight default link krelFloat Float
highlight default link krelOperator Operator
highlight default link krelDelimiter Delimiter
highlight default link krelIllegal Error
highlight default link krelEscape SpecialChar
highlight default link krelString String
highlight default link krelCharacter Character
highlight default link krelTodo Todo
highlight default link krelComment Comment
highlight default link krelBlockComment Comment
highlight default link krelBracePair Comment

let b:current_syntax = 'krel'
