-- A halftone of a formula: ripples around two centres, in rows of dashes whose
-- length is the brightness.
local half = 1300
local pitch = 13
local dash = 20

local function brightness(x, y)
    local a = math.sqrt((x + 500) ^ 2 + y ^ 2)
    local b = math.sqrt((x - 500) ^ 2 + y ^ 2)
    return 0.5 + 0.25 * (math.cos(a / 60) + math.cos(b / 60))
end

local direction = 1
for row = -half, half, pitch do
    for step = -half, half - dash, dash do
        local x = direction * step
        local length = dash * brightness(x, row)
        if length > 1 then
            jump(x, row)
            mark(x + direction * length, row)
        end
    end
    direction = -direction
end
