#include "views/TextCrossing.h"

#include "text/PathText.h"

#include <system_error>

QString ToQString(std::u16string_view text)
{
    return QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size()));
}

QString LiteralTitle(QString title)
{
    return title.replace(QLatin1String("[*]"), QLatin1String("[*][*]"));
}

std::u16string_view ViewOf(const QString& text)
{
    return {reinterpret_cast<const char16_t*>(text.utf16()), static_cast<std::size_t>(text.size())};
}

std::filesystem::path NativePath(const QString& path)
{
    try {
        return std::filesystem::path(path.toStdU16String()).make_preferred();
    } catch (const std::system_error&) { // a lone surrogate has no native form
        return {};
    }
}

QString ToQPath(const std::filesystem::path& path)
{
    return ToQString(PathText(path));
}
