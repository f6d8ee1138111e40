-- Run by check_editors.sh: opens a description with a server, waits for what is found, applies the fix, asks what is under
-- the cursor, and writes the file.
local dcm, file = os.getenv("DCM"), os.getenv("DESCRIPTION")

local function fail(why)
  io.stderr:write(why .. "\n")
  vim.cmd("cquit 1")
end

local function await(what, condition)
  if not vim.wait(20000, condition, 20) then
    fail("not within 20 s: " .. what)
  end
end

vim.cmd("edit " .. file)
local client = vim.lsp.start_client({ name = "dcm", cmd = { dcm, "lsp" } })
vim.lsp.buf_attach_client(0, client)
await("a finding", function() return #vim.diagnostic.get(0) == 1 end)
local finding = vim.diagnostic.get(0)[1]
if finding.code ~= "query-fails" or finding.severity ~= vim.diagnostic.severity.ERROR then
  fail("another finding: " .. vim.inspect(finding))
end
vim.api.nvim_win_set_cursor(0, { finding.lnum + 1, finding.col })

local hover = vim.lsp.buf_request_sync(0, "textDocument/hover", vim.lsp.util.make_position_params(), 20000)
local said = hover[client].result.contents.value
if not said:find("PHY type", 1, true) then
  fail("another hover: " .. said)
end

local params = vim.lsp.util.make_range_params()
params.context = { diagnostics = {} }
local actions = vim.lsp.buf_request_sync(0, "textDocument/codeAction", params, 20000)[client].result
vim.lsp.util.apply_workspace_edit(actions[1].edit, vim.lsp.get_client_by_id(client).offset_encoding)
await("that nothing is found", function() return #vim.diagnostic.get(0) == 0 end)
vim.cmd("write")
vim.lsp.stop_client(client)
vim.cmd("qall")
