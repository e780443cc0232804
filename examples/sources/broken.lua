-- What a mistake looks like: Evaluate names its line in the output box. It is
-- line 8, where "raduis" should be "radius".
local radius = 800

jump(radius, 0)
for step = 1, 360 do
    local angle = math.rad(step)
    mark(raduis * math.cos(angle), radius * math.sin(angle))
end
