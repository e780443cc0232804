-- Seeds of a sunflower: each a small circle, turned from the one before by the
-- golden angle. Mostly jumps, as the moves chart shows.
local seeds = 1400
local golden = math.pi * (3 - math.sqrt(5))

for i = 1, seeds do
    local r = 34 * math.sqrt(i)
    local x, y = r * math.cos(i * golden), r * math.sin(i * golden)
    local size = 4 + 9 * i / seeds
    jump(x + size, y)
    for step = 1, 16 do
        local angle = step * math.pi / 8
        mark(x + size * math.cos(angle), y + size * math.sin(angle))
    end
end
