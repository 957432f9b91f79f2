#include "changes/LayoutFile.h"
#include "changes/LayoutPattern.h"
#include "tests/fuzz/Property.h"
#include "tests/fuzz/Targets.h"
#include "text/Utf8Text.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace {

constexpr std::size_t kMostTables = 20;
constexpr std::size_t kMostUnits = 10; // of a pattern, for a matching that takes its time

/// The same as IsMatch says, as the words say it: each "*" stands for every number of characters.
bool MatchesPlainly(std::u16string_view pattern, std::u16string_view path)
{
    if (pattern.empty())
        return path.empty();
    if (pattern.front() == u'*') {
        if (MatchesPlainly(pattern.substr(1), path))
            return true;
        if (path.empty() || path.front() == u'/')
            return false;
        TakeCharacter(path);
        return MatchesPlainly(pattern, path);
    }
    if (path.empty())
        return false;
    const char32_t wanted = TakeCharacter(pattern);
    const char32_t character = TakeCharacter(path);
    return (wanted == character || (wanted == U'?' && character != U'/')) && MatchesPlainly(pattern, path);
}

/// A path that the pattern may match: each "*" and "?" in it another character.
std::u16string PathFor(std::u16string pattern)
{
    std::replace(pattern.begin(), pattern.end(), u'*', u'a');
    std::replace(pattern.begin(), pattern.end(), u'?', u'b');
    if (pattern.starts_with(u'/'))
        pattern.erase(0, 1);
    return pattern;
}

void CheckPattern(const std::u16string& pattern)
{
    Require(IsMatch(pattern, PathFor(pattern)), "a pattern matches what is put in for its signs");
    if (pattern.size() > kMostUnits)
        return;
    const std::u16string_view plain = std::u16string_view(pattern).substr(pattern.starts_with(u'/') ? 1 : 0);
    for (const std::u16string_view path : {u"a.rcp", u"ab", u"a/b", u"a/b.rcp", u"//", u"*?", u"\U0001F35E"})
        Require(IsMatch(pattern, path) == MatchesPlainly(plain, path), "a pattern matches what it says");
}

} // namespace

void FuzzLayout(FuzzBytes bytes)
{
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    Layout layout;
    if (const auto fault = LayoutFromJson(text, layout)) {
        Require(fault->place.starts_with(u'/') && !fault->text.empty(), "a fault has a place and a text");
        return;
    }
    layout.path = "/recipes/.vantor.json";
    const std::size_t count = std::min(layout.tables.size(), kMostTables);
    for (std::size_t i = 0; i < count; ++i) {
        const LayoutTable& table = layout.tables[i];
        Require(!table.files.empty() && !table.format.empty() && table.start >= 0 && table.rows.value_or(1) >= 1,
                "a table has a pattern, a format, and a place in a file");
        CheckPattern(table.files);
    }
    for (const char* file : {"/recipes/a.rcp", "/recipes/a/b.rcp", "/elsewhere/a.rcp", "a.rcp", "/", ""}) {
        const auto tables = TablesFor(layout, file);
        Require(std::is_sorted(tables.begin(), tables.end()) &&
                    (tables.empty() || tables.back() < layout.tables.size()),
                "the tables of a file are some of the layout");
    }
}
