-- Turns the stock binding generator into the project's: its parser reads a description, the files under generator/ write the code.
-- Called as: tolua++5.1 -L hook.lua -E generator=<folder of this file> -E source=<name to report> -E manifest=<file> ...

local folder = _extra_parameters.generator

vyr = {
  source = _extra_parameters.source or "description",
  manifestFile = _extra_parameters.manifest,
}

-- Stock generators report an error and exit with 0; a build has to see it.
function vyr.fail(message)
  if _OUTPUT and flags.o then
    _OUTPUT:close()
    os.remove(flags.o)
  end
  io.stderr:write(vyr.source, ": ", message, "\n")
  os.exit(1)
end

function tolua_error(message, label)
  local near = _curr_code and string.match(_curr_code, "^%s*([^\n]*)")
  local text = string.gsub(message or label or "unknown error", "^#", "")
  vyr.fail(text .. (near and near ~= "" and "\n  near: " .. near or ""))
end

-- What the stock generator only warns about (a skipped operator, a variable of an unnamed type) would be an entry lost.
function warning(message)
  vyr.fail(message)
end

for _, part in ipairs({ "directives", "declarations", "functions", "variables", "registration", "manifest" }) do
  dofile(folder .. "/generator/" .. part .. ".lua")
end
