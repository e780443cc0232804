#include "ui/font.hpp"

#include "tests/support/scratch.hpp"

#include "ui/font_file.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <iterator>
#include <random>
#include <string_view>
#include <utility>
#include <vector>

namespace
{

// A font as the program bakes it, without a window.
class Font : public testing::Test
{
protected:
    Font()
    {
        nk_font_atlas_init_default(&atlas);
        nk_font_atlas_begin(&atlas);
    }

    ~Font() override
    {
        nk_font_atlas_clear(&atlas);
    }

    void bake(const char *path, float pixels = vimbo::font_height)
    {
        font = vimbo::add_font(&atlas, path, pixels);
        ASSERT_NE(font, nullptr);
        int width = 0;
        int height = 0;
        nk_font_atlas_bake(&atlas, &width, &height, NK_FONT_ATLAS_ALPHA8);
        nk_font_atlas_end(&atlas, nk_handle_id(0), nullptr);
    }

    const nk_font_glyph &glyph(nk_rune character) const
    {
        return *nk_font_find_glyph(font, character);
    }

    struct nk_font_atlas atlas = {};
    struct nk_font *font = nullptr;
};

TEST_F(Font, HasEveryCharacterOfTheProgramsLabels)
{
    bake(VIMBO_FONT);
    constexpr std::string_view labels =
        "Xabcdefghijklmnopqrstuvwxyz0123456789↻↩|+-!µ▁▂▃▄▅▆▇█φΨr̿ₖ₀∑₌₍₃₂₎₊₁|=/.[]()";
    for (std::size_t at = 0; at < labels.size();) {
        nk_rune character = 0;
        const int length =
            nk_utf_decode(&labels[at], &character, static_cast<int>(labels.size() - at));
        EXPECT_EQ(glyph(character).codepoint, character)
            << labels.substr(at, static_cast<std::size_t>(length)) << " would show as ?";
        at += static_cast<std::size_t>(length);
    }
}

TEST_F(Font, HasTheCharactersOfItsRangesAndNoOthers)
{
    bake(VIMBO_FONT);
    const std::pair<nk_rune, nk_rune> ranges[] = {
        {0x0009, 0x000D}, {0x0020, 0x017F}, {0x033F, 0x033F}, {0x0370, 0x03FF}, {0x2010, 0x2027},
        {0x2070, 0x209C}, {0x2190, 0x21FF}, {0x2200, 0x22FF}, {0x2580, 0x259F}};
    nk_rune count = 0;
    for (const auto &[first, last] : ranges) {
        EXPECT_EQ(glyph(first).codepoint, first);
        EXPECT_EQ(glyph(last).codepoint, last);
        count += last - first + 1;
    }
    EXPECT_EQ(font->info.glyph_count, count);
}

TEST_F(Font, IsSixteenPixelsHigh)
{
    bake(VIMBO_FONT);
    EXPECT_EQ(font->handle.height, 16);
}

TEST_F(Font, CanBePutOnWholePixels)
{
    for (const float pixels : {20.0F, 32.0F}) {
        nk_font_atlas_clear(&atlas);
        nk_font_atlas_init_default(&atlas);
        nk_font_atlas_begin(&atlas);
        bake(VIMBO_FONT, pixels);
        const nk_font_glyph before = glyph('E');
        ASSERT_NE(before.y0, std::round(before.y0)) << "it lies there by itself";
        vimbo::put_glyphs_on_pixels(font);
        EXPECT_EQ(glyph('E').y0, std::round(before.y0));
        EXPECT_FLOAT_EQ(glyph('E').y1 - glyph('E').y0, before.y1 - before.y0);
        EXPECT_EQ(glyph('E').v0, before.v0);
        for (const nk_rune character : {U'g', U'T', U'_', U'|'})
            EXPECT_EQ(glyph(character).y0, std::round(glyph(character).y0)) << character;
    }
}

TEST_F(Font, ShowsATabAsFourBlanksAndACarriageReturnAsOne)
{
    bake(VIMBO_FONT);
    vimbo::blank_control_characters(font);
    constexpr nk_rune tab = '\t';
    for (const nk_rune character :
         {tab, nk_rune{'\n'}, nk_rune{'\v'}, nk_rune{'\f'}, nk_rune{'\r'}}) {
        const float blanks = character == tab ? 4 : 1;
        EXPECT_EQ(glyph(character).codepoint, character);
        EXPECT_EQ(glyph(character).xadvance, blanks * glyph(' ').xadvance) << character;
        EXPECT_EQ(glyph(character).w, glyph(' ').w) << character;
    }
}

TEST_F(Font, IsAbsentWhereTheFileIsNoFont)
{
    const rig::scratch_directory place;
    rig::write_file(place.file("text"), "this is no font, whatever its name says");
    rig::write_file(place.file("short"), "OT");
    rig::write_file(place.file("empty"), "");
    for (const char *name : {"text", "short", "empty", "missing"})
        EXPECT_EQ(vimbo::add_font(&atlas, place.file(name).c_str(), vimbo::font_height), nullptr)
            << name;
}

std::uint32_t number_at(std::string_view bytes, std::size_t at, int size)
{
    std::uint32_t number = 0;
    for (int i = 0; i < size; ++i)
        number = number << 8 | static_cast<unsigned char>(bytes[at + static_cast<std::size_t>(i)]);
    return number;
}

void put_number(std::string &bytes, std::size_t at, std::uint32_t number, int size)
{
    for (int i = size - 1; i >= 0; --i, number >>= 8)
        bytes[at + static_cast<std::size_t>(i)] = static_cast<char>(number);
}

// A copy of the program's font, to be damaged.
class FontFile : public Font
{
protected:
    struct table {
        std::string tag;
        std::size_t record, offset, length;
    };

    FontFile() : whole(rig::read_file(VIMBO_FONT))
    {
        for (std::size_t record = 12; record < 12 + 16 * number_at(whole, 4, 2); record += 16)
            tables.push_back({whole.substr(record, 4), record, number_at(whole, record + 8, 4),
                              number_at(whole, record + 12, 4)});
    }

    const table &table_of(std::string_view tag) const
    {
        for (const table &each : tables)
            if (each.tag == tag)
                return each;
        throw std::runtime_error("the font has no table " + std::string(tag));
    }

    bool is_taken(const std::string &bytes) const
    {
        rig::write_file(path, bytes);
        return vimbo::is_whole_font(path.c_str());
    }

    // Puts the table's sum right again.
    void set_checksum(std::string &bytes, const table &of) const
    {
        std::string body = bytes.substr(of.offset, of.length);
        body.resize((of.length + 3) / 4 * 4);
        std::uint32_t sum = 0;
        for (std::size_t at = 0; at < body.size(); at += 4)
            sum += number_at(body, at, 4);
        put_number(bytes, of.record + 4, sum, 4);
    }

    static constexpr std::string_view read_tables[] = {"cmap", "glyf", "head", "hhea",
                                                       "hmtx", "loca", "maxp"};
    const rig::scratch_directory place;
    const std::string path = place.file("font");
    const std::string whole;
    std::vector<table> tables;
};

TEST_F(FontFile, IsAcceptedUndamaged)
{
    EXPECT_TRUE(vimbo::is_whole_font(VIMBO_FONT));
}

TEST_F(FontFile, IsRefusedWhenItIsCutAnywhere)
{
    for (const std::size_t length :
         {std::size_t{0}, std::size_t{3}, std::size_t{4}, std::size_t{11}, std::size_t{12},
          std::size_t{27}, std::size_t{28}, std::size_t{200}, std::size_t{1000}, whole.size() / 3,
          whole.size() / 2, whole.size() - 1000})
        EXPECT_FALSE(is_taken(whole.substr(0, length))) << length;
    for (const table &each : tables)
        for (const std::size_t length : {each.offset, each.offset + each.length - 1})
            EXPECT_FALSE(is_taken(whole.substr(0, length))) << each.tag << ' ' << length;
}

TEST_F(FontFile, IsRefusedWithAByteChangedInATableThatIsRead)
{
    for (const std::string_view tag : {"cmap", "glyf", "hhea", "hmtx", "loca", "maxp"})
        for (const std::size_t place_in :
             {std::size_t{0}, table_of(tag).length / 2, table_of(tag).length - 1}) {
            std::string damaged = whole;
            damaged[table_of(tag).offset + place_in] ^= 0x10;
            EXPECT_FALSE(is_taken(damaged)) << tag << " at " << place_in;
        }
}

TEST_F(FontFile, IsAcceptedWithDamageInTablesThatAreNotRead)
{
    std::string damaged = whole;
    for (const char *tag : {"GPOS", "GSUB", "name", "post"})
        damaged[table_of(tag).offset + 20] ^= 0x10;
    ASSERT_TRUE(is_taken(damaged));
    bake(path.c_str());
    EXPECT_EQ(glyph('A').codepoint, nk_rune{'A'});
}

TEST_F(FontFile, IsAcceptedWithAWrongChecksumOfItsHeader)
{
    std::string other = whole;
    put_number(other, table_of("head").record + 4, 0x12345678, 4);
    EXPECT_TRUE(is_taken(other));
}

TEST_F(FontFile, IsRefusedWithAnImpossibleHeader)
{
    const std::size_t head = table_of("head").offset;
    const std::uint32_t format = number_at(whole, head + 50, 2);
    struct {
        std::size_t at;
        std::uint32_t number;
        int size;
        const char *what;
    } const changes[] = {{12, 0x5F0F3CF4, 4, "magic number"},
                         {18, 0, 2, "units of an em"},
                         {50, 1 - format, 2, "size of places"},
                         {50, 2, 2, "unknown size of places"}};
    for (const auto &change : changes) {
        std::string damaged = whole;
        put_number(damaged, head + change.at, change.number, change.size);
        EXPECT_FALSE(is_taken(damaged)) << change.what;
    }
}

TEST_F(FontFile, IsRefusedWithATableBeyondItsEnd)
{
    for (const table &each : tables)
        for (const int at : {8, 12})
            for (const std::uint32_t number :
                 {0xFFFFFFFFU, static_cast<std::uint32_t>(whole.size() + 1)}) {
                std::string damaged = whole;
                put_number(damaged, each.record + static_cast<std::size_t>(at), number, 4);
                EXPECT_FALSE(is_taken(damaged)) << each.tag << ' ' << number;
            }
}

TEST_F(FontFile, IsAcceptedWithATableThatEndsWithTheFile)
{
    for (const table &each : tables) {
        const std::string copy = whole.substr(each.offset, each.length);
        std::string moved = whole + copy;
        put_number(moved, each.record + 8, static_cast<std::uint32_t>(whole.size()), 4);
        EXPECT_TRUE(is_taken(moved)) << each.tag;
        moved.pop_back();
        EXPECT_FALSE(is_taken(moved)) << each.tag << ", a byte of it is missing";
    }
}

TEST_F(FontFile, IsRefusedWithMoreTablesThanItHolds)
{
    std::string damaged = whole;
    put_number(damaged, 4, 65535, 2);
    EXPECT_FALSE(is_taken(damaged));
    put_number(damaged, 4, 0, 2);
    EXPECT_FALSE(is_taken(damaged));
}

// The least font there is, whose tables read as records of the directory, too: of tables
// that have no length.
std::string least_font(std::uint32_t records)
{
    constexpr std::size_t cmap = 12 + 7 * 16;
    constexpr std::size_t zeros = cmap + 16;
    constexpr std::size_t head = zeros + 48 + 4;
    std::string font(12 + 15 * 16, '\0');
    put_number(font, 0, 0x00010000, 4);
    put_number(font, 4, records, 2);
    const struct {
        const char *tag;
        std::uint32_t checksum;
        std::size_t offset;
        std::uint32_t length;
    } tables[] = {{"cmap", 0x10, cmap, 16}, {"glyf", 0, zeros, 1}, {"head", 0, head, 54},
                  {"hhea", 0, zeros, 36},   {"hmtx", 0, zeros, 4}, {"loca", 0, zeros, 2},
                  {"maxp", 0, zeros, 6}};
    for (std::size_t i = 0; i < std::size(tables); ++i) {
        const std::size_t record = 12 + 16 * i;
        font.replace(record, 4, tables[i].tag);
        put_number(font, record + 4, tables[i].checksum, 4);
        put_number(font, record + 8, static_cast<std::uint32_t>(tables[i].offset), 4);
        put_number(font, record + 12, tables[i].length, 4);
    }
    put_number(font, cmap + 2, 1, 2); // one map, of any Unicode,
    put_number(font, cmap + 6, 3, 2);
    put_number(font, cmap + 8, 12, 4); // that is of format 0
    put_number(font, head + 12, 0x5F0F3CF5, 4);
    put_number(font, head + 18, 1000, 2);
    return font;
}

TEST_F(FontFile, IsRefusedWhereItEndsWithinItsDirectory)
{
    ASSERT_TRUE(is_taken(least_font(7)));
    EXPECT_TRUE(is_taken(least_font(15))) << "the last record ends with the file";
    EXPECT_FALSE(is_taken(least_font(16)));
}

TEST_F(FontFile, IsRefusedWithoutATableThatIsRead)
{
    for (const std::string_view tag : read_tables) {
        std::string damaged = whole;
        damaged[table_of(tag).record] = 'X';
        EXPECT_FALSE(is_taken(damaged)) << tag;
    }
}

TEST_F(FontFile, IsRefusedWithATableTooShortForItsFields)
{
    const std::pair<const char *, std::size_t> fields[] = {{"cmap", 4}, {"head", 54}, {"hhea", 36},
                                                           {"hmtx", 4}, {"loca", 2},  {"maxp", 6}};
    for (const auto &[tag, size] : fields) {
        table cut = table_of(tag);
        cut.length = size - 1;
        std::string damaged = whole;
        put_number(damaged, cut.record + 12, static_cast<std::uint32_t>(cut.length), 4);
        set_checksum(damaged, cut);
        EXPECT_FALSE(is_taken(damaged)) << tag;
    }
}

// Outlines of the other kind lie in a table of their own.
TEST_F(FontFile, IsRefusedWithOutlinesThatCannotBeBaked)
{
    std::string other = whole;
    other.replace(0, 4, "OTTO");
    EXPECT_FALSE(is_taken(other));
    other = whole;
    other.replace(table_of("glyf").record, 4, "CFF ");
    EXPECT_FALSE(is_taken(other));
}

TEST_F(FontFile, IsRefusedWithoutAUnicodeMapOfAKnownFormat)
{
    const table &cmap = table_of("cmap");
    const std::size_t maps = number_at(whole, cmap.offset + 2, 2);
    std::string symbols = whole;
    std::string unknown = whole;
    for (std::size_t i = 0; i < maps; ++i) {
        const std::size_t record = cmap.offset + 4 + 8 * i;
        put_number(symbols, record, 0x00030000, 4);
        put_number(unknown, cmap.offset + number_at(whole, record + 4, 4), 2, 2);
    }
    for (std::string *changed : {&symbols, &unknown}) {
        set_checksum(*changed, cmap);
        EXPECT_FALSE(is_taken(*changed));
    }
}

TEST_F(FontFile, IsAcceptedWithAMapOfEachFormatThatIsKnownAndOfNoOther)
{
    const table &cmap = table_of("cmap");
    for (std::uint32_t format = 0; format <= 16; ++format) {
        std::string changed = whole;
        for (std::size_t i = 0; i < number_at(whole, cmap.offset + 2, 2); ++i)
            put_number(changed, cmap.offset + number_at(whole, cmap.offset + 8 + 8 * i, 4), format,
                       2);
        set_checksum(changed, cmap);
        const bool known =
            format == 0 || format == 4 || format == 6 || format == 12 || format == 13;
        EXPECT_EQ(is_taken(changed), known) << "format " << format;
    }
}

TEST_F(FontFile, IsAcceptedWithItsOneUnicodeMapBehindOthers)
{
    const table &cmap = table_of("cmap");
    const std::size_t maps = number_at(whole, cmap.offset + 2, 2);
    ASSERT_GT(maps, 1U);
    std::string changed = whole;
    for (std::size_t i = 0; i + 1 < maps; ++i)
        put_number(changed, cmap.offset + 4 + 8 * i, 0x00030000, 4); // symbols
    set_checksum(changed, cmap);
    EXPECT_TRUE(is_taken(changed));
}

TEST_F(FontFile, IsAcceptedThoughItLacksCharactersOfTheLabels)
{
    std::string without = whole;
    const table &cmap = table_of("cmap");
    const std::size_t last_record =
        cmap.offset + 4 + 8 * std::size_t{number_at(whole, cmap.offset + 2, 2) - 1};
    const std::size_t map = cmap.offset + number_at(whole, last_record + 4, 4);
    ASSERT_EQ(number_at(whole, map, 2), 12U) << "groups of first character, last, and first glyph";
    constexpr std::uint32_t greek = 0x0370;
    std::size_t groups = 0;
    while (number_at(whole, map + 16 + 12 * groups, 4) < greek)
        ++groups;
    put_number(without, map + 12, static_cast<std::uint32_t>(groups), 4);
    set_checksum(without, cmap);
    ASSERT_TRUE(is_taken(without));
    bake(path.c_str());
    const nk_font_glyph &missing = glyph(U'\u2211');
    EXPECT_EQ(glyph(U'Ψ').w, missing.w) << "as any character that is missing";
    EXPECT_EQ(glyph('A').codepoint, nk_rune{'A'});
    EXPECT_GT(glyph('A').w, 0);
}

TEST_F(FontFile, CanBeBakedWheneverItIsAcceptedWithRandomChanges)
{
    std::mt19937 random(20240607);
    const std::size_t directory = 12 + 16 * tables.size();
    int taken = 0;
    constexpr int rounds = 60;
    for (int round = 0; round < rounds; ++round) {
        std::string damaged = whole;
        // In turn in the directory, where a little does much, and anywhere.
        const std::size_t reach = round % 2 == 0 ? directory : whole.size();
        damaged[random() % reach] = static_cast<char>(random());
        if (!is_taken(damaged))
            continue;
        ++taken;
        nk_font_atlas_clear(&atlas);
        nk_font_atlas_init_default(&atlas);
        nk_font_atlas_begin(&atlas);
        bake(path.c_str());
        EXPECT_EQ(glyph('A').codepoint, nk_rune{'A'});
    }
    EXPECT_GT(taken, 0);
    EXPECT_LT(taken, rounds);
}

TEST_F(Font, IsUnchangedWhenItLacksControlCharacters)
{
    struct nk_font_config config = nk_font_config(16);
    config.range = nk_font_default_glyph_ranges();
    font = nk_font_atlas_add_from_file(&atlas, VIMBO_FONT, 16, &config);
    ASSERT_NE(font, nullptr);
    int width = 0;
    int height = 0;
    nk_font_atlas_bake(&atlas, &width, &height, NK_FONT_ATLAS_ALPHA8);
    nk_font_atlas_end(&atlas, nk_handle_id(0), nullptr);
    const nk_font_glyph before = glyph('?');
    vimbo::blank_control_characters(font);
    EXPECT_EQ(glyph('?').codepoint, before.codepoint);
    EXPECT_EQ(glyph('?').w, before.w);
    EXPECT_EQ(glyph('\t').codepoint, before.codepoint) << "what has no glyph shows as this";
}

} // namespace
