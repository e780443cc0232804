-- A guilloche rosette: one wavy ring, drawn many times, each a little turned.
local rings = 12
local steps = 1800
local petals = 12

local function radius(angle, phase)
    return 620 + 300 * math.sin(petals * angle + phase) + 90 * math.cos(petals / 2 * angle)
end

for ring = 0, rings - 1 do
    local phase = ring * 2 * math.pi / rings
    for step = 0, steps do
        local angle = step * 2 * math.pi / steps
        local r = radius(angle, phase)
        local move = step == 0 and jump or mark
        move(r * math.cos(angle), r * math.sin(angle))
    end
end
print(rings .. " rings of " .. steps .. " marks")
