autocmd BufRead,BufNewFile *.krl setfiletype krel
