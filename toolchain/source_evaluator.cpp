#include "toolchain/source_evaluator.hpp"

#include <cstdlib>
#include <lua.hpp>

namespace toolchain
{

namespace
{

constexpr double length_units_per_um = vimbo::length_units_per_mm / 1000.0;
// A source that needs more than this has gone astray; it should be told so
// before the machine suffers.
constexpr std::size_t memory_limit = std::size_t{2} << 30;

struct run_state {
    const evaluation_request &request;
    double scale; // length_unit in one unit of the source
    move_list &moves;
    std::size_t memory_used = 0;
    bool only_whole_numbers = true; // all arguments of moves so far
};

run_state &state_of(lua_State *lua)
{
    return **static_cast<run_state **>(lua_getextraspace(lua));
}

void *allocate(void *user, void *block, std::size_t old_size, std::size_t new_size)
{
    auto &run = *static_cast<run_state *>(user);
    const std::size_t held = block == nullptr ? 0 : old_size;
    if (new_size == 0) {
        std::free(block);
        run.memory_used -= held;
        return nullptr;
    }
    if (run.memory_used - held + new_size > memory_limit)
        return nullptr;
    void *moved = std::realloc(block, new_size);
    if (moved != nullptr)
        run.memory_used += new_size - held;
    return moved;
}

struct point {
    double x;
    double y;
};

// As luaL_checknumber, with half the calls.
double argument(lua_State *lua, int index)
{
    const double number = lua_tonumberx(lua, index, nullptr);
    // 0 is also what stands for anything but a number.
    return number != 0 ? number : luaL_checknumber(lua, index);
}

// Whole numbers are faster had as what they are; a source that also makes moves of others
// is not asked for them any more. Inline, as it would be called otherwise, for every move.
inline point arguments(run_state &run, lua_State *lua)
{
    if (run.only_whole_numbers) {
        int is_whole_x = 0;
        int is_whole_y = 0;
        const lua_Integer x = lua_tointegerx(lua, 1, &is_whole_x);
        const lua_Integer y = lua_tointegerx(lua, 2, &is_whole_y);
        if (is_whole_x != 0 && is_whole_y != 0)
            return {static_cast<double>(x), static_cast<double>(y)};
        run.only_whole_numbers = false;
    }
    return {argument(lua, 1), argument(lua, 2)};
}

template <bool Mark>
int make_move(lua_State *lua)
{
    run_state &run = state_of(lua);
    const auto [x, y] = arguments(run, lua);
    switch (run.moves.append(x * run.scale, y * run.scale, Mark)) {
    case move_fault::coordinate_range:
        return luaL_error(lua, "(%f, %f) is out of the range of 32-bit coordinates", x, y);
    case move_fault::too_many:
        return luaL_error(lua, "more than %d moves", static_cast<int>(max_moves));
    case move_fault::no_memory:
        return luaL_error(lua, "not enough memory for the moves");
    case move_fault::none:
        break;
    }
    return 0;
}

void open_library(lua_State *lua, const char *name, lua_CFunction open)
{
    luaL_requiref(lua, name, open, 1);
    lua_pop(lua, 1);
}

// Sources look `mark` up for every move: it is found at the first look in a table with
// room to spare, of which it has the first choice.
void make_globals(lua_State *lua)
{
    constexpr int room = 256;
    lua_createtable(lua, 0, room);
    lua_rawseti(lua, LUA_REGISTRYINDEX, LUA_RIDX_GLOBALS);
    lua_register(lua, "mark", make_move<true>);
    lua_register(lua, "jump", make_move<false>);
}

// Nothing that reaches a file, a process or compiled code.
int set_up(lua_State *lua)
{
    make_globals(lua);
    open_library(lua, LUA_GNAME, luaopen_base);
    open_library(lua, LUA_MATHLIBNAME, luaopen_math);
    open_library(lua, LUA_STRLIBNAME, luaopen_string);
    open_library(lua, LUA_TABLIBNAME, luaopen_table);
    open_library(lua, LUA_UTF8LIBNAME, luaopen_utf8);
    for (const char *name : {"dofile", "loadfile", "load"}) {
        lua_pushnil(lua);
        lua_setglobal(lua, name);
    }
    return 0;
}

int run_source(lua_State *lua)
{
    const run_state &run = state_of(lua);
    const std::string_view source = run.request.source;
    if (luaL_loadbufferx(lua, source.data(), source.size(), "=source", "t") != LUA_OK)
        return lua_error(lua);
    lua_call(lua, 0, 0);
    return 0;
}

// Not what __tostring would make of it: that may fail in turn, here unprotected.
std::string take_error(lua_State *lua)
{
    return lua_type(lua, -1) == LUA_TSTRING ? lua_tostring(lua, -1) : "an error that is no text";
}

} // namespace

std::string evaluate(const evaluation_request &request, move_list &moves)
{
    run_state run = {request, request.unit_um * length_units_per_um, moves};
    lua_State *lua = lua_newstate(allocate, &run);
    if (lua == nullptr)
        return "not enough memory";
    *static_cast<run_state **>(lua_getextraspace(lua)) = &run;

    std::string error;
    for (const lua_CFunction step : {set_up, run_source}) {
        lua_pushcfunction(lua, step);
        if (lua_pcall(lua, 0, 0, 0) == LUA_OK)
            continue;
        error = take_error(lua);
        break;
    }
    lua_close(lua);
    return error;
}

} // namespace toolchain
