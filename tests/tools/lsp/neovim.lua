-- Drives krel lsp by Neovim's own client, as the files in editors/vim/ start it. Comes in: the
-- environment's KREL and PROGRAM, a file with a variable that has no value. Goes out: a JSON object on
-- standard output, what Neovim has seen.

local seen = {}

local function wait(condition, what)
    if not vim.wait(60000, condition, 10) then
        error("waited in vain for " .. what)
    end
end

local function rules()
    local list = {}
    for _, diagnostic in ipairs(vim.diagnostic.get(0)) do
        table.insert(list, { diagnostic.code, diagnostic.lnum, diagnostic.col })
    end
    return list
end

local function lines()
    return vim.api.nvim_buf_get_lines(0, 0, -1, false)
end

local function parameters(line, column)
    vim.api.nvim_win_set_cursor(0, { line, column })
    return vim.lsp.util.make_position_params(0, vim.lsp.get_client_by_id(seen.client).offset_encoding)
end

local function ask(method, request)
    local answers = assert(vim.lsp.buf_request_sync(0, method, request, 60000))
    local answer = answers[seen.client]
    assert(answer.error == nil, vim.inspect(answer.error))
    return answer.result
end

local function run()
    local start = vim.lsp.start_client
    vim.lsp.start_client = function(settings)
        settings.on_exit = function(status) seen.status = status end
        seen.client = start(settings)
        return seen.client
    end
    vim.g.krel_command = vim.env.KREL
    vim.cmd("edit another.krl")
    local first = seen.client
    vim.cmd("edit " .. vim.env.PROGRAM)
    assert(seen.client == first, "a second server was started")
    wait(function() return #vim.diagnostic.get(0) > 0 end, "diagnostics")
    seen.diagnostics = rules()
    local client = vim.lsp.get_client_by_id(seen.client)
    local encoding = client.offset_encoding
    seen.encoding = encoding

    -- The quick fix of the first diagnostic.
    local request = vim.lsp.util.make_given_range_params({ 2, 8 }, { 2, 9 }, 0, encoding)
    request.context = { diagnostics = {}, only = { "quickfix" } }
    local actions = ask("textDocument/codeAction", request)
    seen.title = actions[1].title
    vim.lsp.util.apply_workspace_edit(actions[1].edit, encoding)
    wait(function() return #vim.diagnostic.get(0) == 0 end, "the repair")
    seen.repaired = lines()

    -- Typing, behind characters that take several bytes.
    local typed = 'print("größe 😀", y); '
    vim.api.nvim_buf_set_text(0, 2, 4, 2, 4, { typed })
    wait(function() return #vim.diagnostic.get(0) > 0 end, "diagnostics of the edit")
    seen.edited = rules()
    vim.api.nvim_buf_set_text(0, 2, 4, 2, 4 + #typed, { "" })
    wait(function() return #vim.diagnostic.get(0) == 0 end, "diagnostics of the second edit")

    seen.hover = ask("textDocument/hover", parameters(3, 6)).contents.value
    request = parameters(2, 8)
    request.newName = "count"
    vim.lsp.util.apply_workspace_edit(ask("textDocument/rename", request), encoding)
    seen.renamed = lines()

    vim.api.nvim_buf_set_lines(0, 3, 3, false, { "  count ++ ;" })
    vim.lsp.buf.formatting_sync(nil, 60000)
    seen.formatted = lines()

    client.stop()
    wait(function() return seen.status ~= nil end, "the end of the server")
end

local succeeded, fault = pcall(run)
seen.fault = not succeeded and tostring(fault) or nil
io.stdout:write(vim.fn.json_encode(seen))
vim.cmd("qall!")
