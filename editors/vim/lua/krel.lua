-- Neovim's connection with `krel lsp`. vim.g.krel_command is the command.

local krel = {}

local current -- the number of the client, from Neovim 0.7, which cannot tell before it has an answer

local function server(buffer)
    return {
        name = "krel",
        cmd = { vim.g.krel_command or "krel", "lsp" },
        root_dir = vim.fn.fnamemodify(vim.api.nvim_buf_get_name(buffer), ":p:h"),
    }
end

--- Lets a buffer be served; there is one server for all of them.
function krel.attach(buffer)
    local settings = server(buffer)
    if vim.fn.executable(settings.cmd[1]) == 0 then
        vim.notify_once("Krel: there is no command " .. settings.cmd[1]
            .. "; vim.g.krel_command names it", vim.log.levels.WARN)
    elseif vim.lsp.start then
        vim.lsp.start(settings, {
            bufnr = buffer,
            reuse_client = function(client) return client.name == settings.name end,
        })
    else
        if not current or not vim.lsp.get_client_by_id(current) then
            current = vim.lsp.start_client(settings)
        end
        vim.lsp.buf_attach_client(buffer, current)
    end
end

return krel
