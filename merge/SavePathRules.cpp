#include "merge/SavePathRules.h"

#include "text/LowerCase.h"
#include "text/MessageText.h"

namespace {

constexpr std::u16string_view kWhiteSpace = u"\t\n\v\f\r \u0085\u00A0\u1680\u2000\u2001\u2002\u2003\u2004\u2005\u2006"
                                            u"\u2007\u2008\u2009\u200A\u2028\u2029\u202F\u205F\u3000";
constexpr std::u16string_view kNotInNames = u"|\\\"*/<>?:"; // on every platform: the file may travel to another
constexpr std::u16string_view kEnding = u".rcp";

/// Without a separator in it there is no folder: npos + 1 is 0.
std::u16string_view FolderPart(std::u16string_view path, char16_t separator)
{
    return path.substr(0, path.rfind(separator) + 1);
}

std::u16string WithoutDoubles(std::u16string_view path, char16_t separator)
{
    std::u16string single;
    while (!path.empty()) {
        const bool isDouble = path.size() > 1 && path[0] == separator && path[1] == separator;
        single += path.front();
        path.remove_prefix(isDouble ? 2 : 1);
    }
    return single;
}

} // namespace

std::u16string_view Trimmed(std::u16string_view text)
{
    const std::size_t first = text.find_first_not_of(kWhiteSpace);
    if (first == std::u16string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(kWhiteSpace) - first + 1);
}

std::u16string ExecutableFolder(std::u16string_view executable, char16_t separator, const FolderTest& folderExists)
{
    const std::u16string_view real = FolderPart(executable, separator);
    std::u16string lower = LowerCase(real);
    if (!folderExists(lower) && folderExists(real))
        return std::u16string(real);
    return lower;
}

std::u16string FolderChosen(std::u16string_view path, char16_t separator)
{
    return WithoutDoubles(std::u16string(path) + separator, separator);
}

std::u16string ShownPath(std::u16string_view folder, std::u16string_view name, char16_t separator)
{
    std::u16string path(folder);
    path += separator;
    path += name;
    return WithoutDoubles(path, separator);
}

std::optional<std::u16string> MergeNameFault(std::u16string_view name)
{
    const std::u16string_view bare = Trimmed(name);
    if (bare.empty())
        return u"The file name can't be empty ,please input it!";
    if (bare.find_first_of(kNotInNames) != std::u16string_view::npos)
        return u"the file isn't illegal \uFF0Cplease reinput it!"; // kept, the full-width comma too
    return std::nullopt;
}

std::u16string WithRcpEnding(std::u16string_view path)
{
    std::u16string result(path);
    if (path.size() < kEnding.size() || LowerCase(path.substr(path.size() - kEnding.size())) != kEnding)
        result += kEnding;
    return result;
}

std::u16string OverwriteQuestion(std::u16string_view path)
{
    return FillMessage(u"The file %s exist,\nMerge operation can empty the file content,continue?", {path});
}
