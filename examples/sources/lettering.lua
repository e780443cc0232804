-- Lettering, hatched: each letter is a grid of cells, each run of cells a field
-- of slanted lines.
local letters = {
    V = {"#   #", "#   #", "#   #", "#   #", " # # ", " # # ", "  #  "},
    I = {" ### ", "  #  ", "  #  ", "  #  ", "  #  ", "  #  ", " ### "},
    M = {"#   #", "## ##", "# # #", "# # #", "#   #", "#   #", "#   #"},
    B = {"#### ", "#   #", "#   #", "#### ", "#   #", "#   #", "#### "},
    O = {" ### ", "#   #", "#   #", "#   #", "#   #", "#   #", " ### "},
}
local word = "VIMBO"
local cell = 88        -- width and height of a cell
local lines = 10       -- hatch lines a cell
local advance = 6 * cell

-- Slanted lines through a field of cells, alternately up and down.
local function hatch(left, bottom, cells)
    local up = true
    for i = 0, cells * lines - 1 do
        local x = left + i * cell / lines
        if up then
            jump(x, bottom)
            mark(x + cell / lines, bottom + cell)
        else
            jump(x + cell / lines, bottom + cell)
            mark(x, bottom)
        end
        up = not up
    end
end

local left = -#word * advance / 2 + cell / 2
for i = 1, #word do
    local rows = letters[word:sub(i, i)]
    for row, cells in ipairs(rows) do
        local bottom = (#rows / 2 - row) * cell
        for first, run in cells:gmatch("()(#+)") do
            hatch(left + (first - 1) * cell, bottom, #run)
        end
    end
    left = left + advance
end
