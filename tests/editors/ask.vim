" Asks Vim or Neovim about a program. Comes in: the environment's REQUEST, a file with JSON. Goes out:
" the file that it names as "answer", with JSON.

let s:request = json_decode(join(readfile($REQUEST), "\n"))
let s:answer = {}

function! s:GroupAt(place) abort
  return synIDattr(synID(a:place[0], a:place[1], 1), 'name')
endfunction

try
  filetype plugin indent on
  syntax enable
  let g:krel_command = get(s:request, 'krel', 'krel')
  execute 'edit' fnameescape(s:request.program)
  let s:answer.filetype = &filetype
  let s:answer.groups = map(copy(get(s:request, 'places', [])), {_, place -> s:GroupAt(place)})
  if has_key(s:request, 'indent')
    let s:answer.texts = []
    for s:file in s:request.indent
      execute 'edit!' fnameescape(s:file)
      normal! gg=G
      call add(s:answer.texts, join(getline(1, '$'), "\n") . "\n")
    endfor
  endif
  if has_key(s:request, 'make')
    silent make!
    let s:answer.problems = map(filter(getqflist(), {_, entry -> entry.valid}),
          \ {_, entry -> [entry.lnum, entry.col, entry.type, entry.text]})
  endif
catch
  let s:answer.fault = v:exception . ' in ' . v:throwpoint
endtry
call writefile([json_encode(s:answer)], s:request.answer)
qall!
