-- Fills a square with one Hilbert curve: every place is near its neighbours
-- along the line, as the locality chart shows.
local order = 7
local side = 2 ^ order
local pitch = 2400 / side

-- Place number n of the curve on the grid.
local function place(n)
    local x, y, s = 0, 0, 1
    while s < side do
        local rx = (n // 2) % 2
        local ry = (n ~ rx) % 2
        if ry == 0 then
            if rx == 1 then x, y = s - 1 - x, s - 1 - y end
            x, y = y, x
        end
        x, y = x + s * rx, y + s * ry
        n, s = n // 4, s * 2
    end
    return (x - (side - 1) / 2) * pitch, (y - (side - 1) / 2) * pitch
end

jump(place(0))
for n = 1, math.tointeger(side * side) - 1 do
    mark(place(n))
end
