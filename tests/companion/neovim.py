#!/usr/bin/env python3
"""Neovim, set up as docs/editor.md shows it, with the sample configuration: diagnostics of a text that is not saved, a key
completed, a jump to the value of a reference, and an action.
Usage: neovim.py SOURCE_FOLDER PROGRAM [PICTURE]     the screen with diagnostics and hover goes into the picture"""
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

if not shutil.which("nvim"):
    sys.exit(77)
source, program = sys.argv[1:3]
shown = re.search(r"<!-- neovim -->\n```lua\n(.*?)```", pathlib.Path(source, "docs/editor.md").read_text(), re.S)[1]
TALK = """
vim.cmd('filetype on')
local function await(what, done) if not vim.wait(20000, done, 20) then print('no ' .. what); vim.cmd('cquit') end end
local function found(code) return function()
  return vim.tbl_count(vim.tbl_filter(function(d) return d.message:find(code, 1, true) end, vim.diagnostic.get(0))) > 0
end end
vim.cmd('edit team.ini')
await('client', function() return #vim.lsp.buf_get_clients(0) > 0 end)
vim.api.nvim_buf_set_lines(0, 6, 7, false, { 'quiet = yes' })
await('diagnostic', found("'yes' is neither"))
if picture then
  vim.api.nvim_win_set_cursor(0, { 4, 2 })
  vim.lsp.buf.hover()
  await('hover', function() return #vim.api.nvim_list_wins() > 1 end)
  vim.cmd('redraw')
  local lines = {}
  for row = 1, vim.o.lines do
    local cells = {}
    for column = 1, vim.o.columns do cells[column] = vim.fn.screenstring(row, column) end
    lines[row] = (table.concat(cells):gsub('%s+$', ''))
  end
  for _, window in ipairs(vim.api.nvim_list_wins()) do
    if vim.api.nvim_win_get_config(window).relative ~= '' then
      vim.list_extend(lines, { '', 'K on logfile shows' })
      vim.list_extend(lines, vim.api.nvim_buf_get_lines(vim.api.nvim_win_get_buf(window), 0, -1, false))
    end
  end
  vim.fn.writefile(lines, picture)
  vim.cmd('qa!')
end
vim.api.nvim_buf_set_lines(0, 8, 8, false, { 'exi' })
vim.api.nvim_win_set_cursor(0, { 9, 3 })
local replies = vim.lsp.buf_request_sync(0, 'textDocument/completion', vim.lsp.util.make_position_params(), 20000)
for _, item in ipairs(replies[1].result) do
  if item.label == 'exit' then vim.lsp.util.apply_text_edits({ item.textEdit }, 0, 'utf-16') end
end
assert(vim.fn.getline(9) == 'exit = ', vim.fn.getline(9))
vim.ui.select = function(items, _, choose)
  for _, item in ipairs(items) do if item[2].title == 'Silence C05 on this line' then choose(item) end end
end
vim.api.nvim_win_set_cursor(0, { 7, 8 })
vim.lsp.buf.code_action()
await('action', function() return vim.fn.getline(7) == '; lint: C05' and vim.fn.getline(8) == 'quiet = yes' end)
await('silence', function() return not found("'yes' is neither")() end)
vim.cmd('write')
vim.api.nvim_win_set_cursor(0, { 4, 11 })
vim.lsp.buf.definition()
await('jump', function() return vim.fn.expand('%:t') == 'veltrane.ini' and vim.fn.line('.') == 12 end)
print('passed')
vim.cmd('qa!')
"""
with tempfile.TemporaryDirectory() as work:
    shutil.copytree(f"{source}/examples/config", f"{work}/config")
    picture = f"picture = '{os.path.abspath(sys.argv[3])}'\n" if sys.argv[3:] else ""
    pathlib.Path(work, "talk.lua").write_text(shown + picture + TALK)
    environment = {"PATH": f"{os.path.dirname(program)}:{os.environ['PATH']}", "HOME": work, "metadata": f"{work}/config/metadata",
                   "VORNAK_REGISTRY": f"{work}/config/registry.reg", "data": work, "TERM": "xterm"}
    result = subprocess.run(["nvim", "--headless", "--clean", "+set noswapfile columns=86 lines=15", f"+luafile {work}/talk.lua"],
                            cwd=f"{work}/config/user", env=environment, text=True, stdin=subprocess.DEVNULL, timeout=100,
                            capture_output=True)
    assert result.returncode == 0 and (picture or "passed" in result.stderr), result
