#include "cli/ReadOptions.h"

#include "files/ShowLimits.h"
#include "library/FormatLibrary.h"
#include "library/LibraryFile.h"
#include "text/MessageText.h"
#include "text/Utf8Text.h"

#include <algorithm>
#include <memory>

namespace {

/// The first format when none is asked for; null when the wanted one is not there.
const DataFormat* ChooseFormat(const FormatLibrary& library, const std::optional<std::string>& wanted)
{
    return wanted ? FindFormat(library, FromUtf8(*wanted)) : library.formats.front().get();
}

std::optional<std::u16string> SettingsFault(const ReadSettings& settings)
{
    const auto fault = ReadSettingsFault(settings.startAddress, settings.rowCount);
    return fault ? fault : ShowFault(settings.format, settings.rowCount);
}

} // namespace

void EnsureFormat(FormatLibrary& library)
{
    if (library.formats.empty())
        library.formats.push_back(std::make_unique<DataFormat>(DefaultFormat()));
}

const DataFormat* FindFormat(const FormatLibrary& library, std::u16string_view name)
{
    const auto found = std::find_if(library.formats.begin(), library.formats.end(),
                                    [&](const auto& format) { return TextOf(format->name) == name; });
    return found == library.formats.end() ? nullptr : found->get();
}

std::u16string NoFormatText(std::u16string_view name)
{
    return FillMessage(u"The format %s doesn't exist!", {name});
}

std::optional<ReadSettings> SettleReadSettings(const ReadOptions& options, CReporter& reporter)
{
    FormatLibrary library;
    if (!LoadLibrary(LibraryToRead(options.library, reporter), library, reporter))
        return std::nullopt;
    EnsureFormat(library);
    const DataFormat* format = ChooseFormat(library, options.formatName);
    if (!format) {
        reporter.ShowError(NoFormatText(FromUtf8(*options.formatName)));
        return std::nullopt;
    }
    ReadSettings settings{*format, options.startAddress.value_or(library.startAddress),
                          options.rowCount.value_or(library.rowCount)};
    if (const auto fault = SettingsFault(settings)) {
        reporter.ShowError(*fault);
        return std::nullopt;
    }
    return settings;
}
