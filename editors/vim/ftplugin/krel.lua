-- Neovim: programs in Krel are served by `krel lsp`, unless vim.g.krel_lsp is false.

if vim.g.krel_lsp ~= false then
    require("krel").attach(vim.api.nvim_get_current_buf())
end
