#include "changes/LayoutPattern.h"

#include "text/Utf8Text.h"

#include <algorithm>

namespace {

/// The part up to the next "/", which is taken off `path` with it.
std::u16string_view TakePart(std::u16string_view& path)
{
    const std::size_t length = std::min(path.find(u'/'), path.size());
    const std::u16string_view part = path.substr(0, length);
    path.remove_prefix(std::min(length + 1, path.size()));
    return part;
}

/// `pattern` and `name` without "/". It suffices to go back to the last "*": what an earlier one took can stay.
bool IsPartMatch(std::u16string_view pattern, std::u16string_view name)
{
    std::u16string_view afterStar;
    std::u16string_view retry;
    bool hasStar = false;
    while (!name.empty()) {
        if (pattern.starts_with(u'*')) {
            pattern.remove_prefix(1);
            hasStar = true;
            afterStar = pattern;
            retry = name;
            continue;
        }
        const bool isAny = pattern.starts_with(u'?');
        const char32_t character = TakeCharacter(name);
        if (!pattern.empty() && (TakeCharacter(pattern) == character || isAny))
            continue;
        if (!hasStar)
            return false;
        TakeCharacter(retry);
        name = retry;
        pattern = afterStar;
    }
    return pattern.find_first_not_of(u'*') == std::u16string_view::npos;
}

} // namespace

bool IsMatch(std::u16string_view pattern, std::u16string_view path)
{
    if (pattern.starts_with(u'/'))
        pattern.remove_prefix(1);
    if (std::count(pattern.begin(), pattern.end(), u'/') != std::count(path.begin(), path.end(), u'/'))
        return false;
    bool isMatch = true;
    while (isMatch && !(pattern.empty() && path.empty())) {
        const std::u16string_view part = TakePart(pattern);
        isMatch = IsPartMatch(part, TakePart(path));
    }
    return isMatch;
}

bool CanMatch(std::u16string_view pattern)
{
    if (pattern.starts_with(u'/'))
        pattern.remove_prefix(1);
    if (pattern.empty() || pattern.ends_with(u'/'))
        return false;
    while (!pattern.empty()) {
        const std::u16string_view part = TakePart(pattern);
        if (part.empty() || part == u"." || part == u"..")
            return false;
    }
    return true;
}

bool IsForNames(std::u16string_view pattern)
{
    return pattern.find(u'/') == std::u16string_view::npos;
}

std::u16string_view FolderOf(std::u16string_view pattern)
{
    const std::size_t slash = pattern.rfind(u'/');
    return slash == std::u16string_view::npos ? std::u16string_view() : pattern.substr(0, slash);
}

std::u16string_view NameOf(std::u16string_view pattern)
{
    return pattern.substr(pattern.rfind(u'/') + 1); // npos + 1 is 0
}
