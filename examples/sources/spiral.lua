-- One spiral of a million moves, outward from the tray's centre.
local moves = 1000000
local turns = 400
local radius = 1350

jump(0, 0)
for i = 1, moves do
    local share = i / moves
    local angle = share * turns * 2 * math.pi
    mark(radius * share * math.cos(angle), radius * share * math.sin(angle))
end
