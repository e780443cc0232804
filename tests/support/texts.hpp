// What a text holds, with messages that say what was looked for and where.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>

namespace rig
{

/// Succeeds where the part stands somewhere in the text.
inline testing::AssertionResult holds(std::string_view text, std::string_view part)
{
    if (text.find(part) != std::string_view::npos)
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << '"' << part << "\" is not in \"" << text << '"';
}

/// Succeeds where the part stands nowhere in the text.
inline testing::AssertionResult lacks(std::string_view text, std::string_view part)
{
    if (text.find(part) == std::string_view::npos)
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << '"' << part << "\" is in \"" << text << '"';
}

/// Succeeds where the text begins so.
inline testing::AssertionResult begins(std::string_view text, std::string_view start)
{
    if (text.starts_with(start))
        return testing::AssertionSuccess();
    return testing::AssertionFailure()
           << '"' << text << "\" does not begin with \"" << start << '"';
}

/// For texts that are too long to be printed: says where they part.
inline testing::AssertionResult same_text(std::string_view text, std::string_view wanted)
{
    if (text == wanted)
        return testing::AssertionSuccess();
    constexpr std::size_t shown = 60;
    const auto part = std::mismatch(text.begin(), text.end(), wanted.begin(), wanted.end());
    const auto at = static_cast<std::size_t>(part.first - text.begin());
    return testing::AssertionFailure()
           << text.size() << " bytes for " << wanted.size() << ", other ones from byte " << at
           << " on: \"" << text.substr(at, shown) << "\" for \"" << wanted.substr(at, shown) << '"';
}

} // namespace rig
