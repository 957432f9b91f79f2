#include "recovery/JournalPlace.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kExtension = ".jsonl";
constexpr std::size_t kStampLength = 20;
constexpr std::size_t kIdDigits = 8;
constexpr std::size_t kIdLength = kStampLength + 1 + kIdDigits;

bool IsDigit(char c)
{
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f');
}

bool IsId(std::string_view text)
{
    return text.size() == kIdLength && TimeOfStamp(text.substr(0, kStampLength)) && text[kStampLength] == '-' &&
           std::all_of(text.begin() + kStampLength + 1, text.end(), IsDigit);
}

/// Two journals of one moment have different ones, unless they were begun at one tick of the clock.
std::string IdDigits()
{
    constexpr std::string_view kDigits = "0123456789abcdef";
    const auto ticks = static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
    std::string digits;
    for (std::size_t i = 0; i < kIdDigits; ++i)
        digits += kDigits[(ticks >> (4 * i)) & 0xF];
    return digits;
}

/// Of a name of ASCII letters the letters; nothing of any other.
std::string AsciiName(const fs::path& path)
{
    const fs::path name = path.filename();
    const auto& units = name.native();
    if (!std::all_of(units.begin(), units.end(), [](auto unit) { return unit > 0 && unit < 0x7F; }))
        return {};
    return {units.begin(), units.end()};
}

} // namespace

fs::path UnsavedFolder(const fs::path& dataFolder)
{
    return dataFolder / "unsaved";
}

fs::path DroppedFolder(const fs::path& dataFolder)
{
    return UnsavedFolder(dataFolder) / "dropped";
}

/// A disk that does not tell has no end of names to offer, and the digits are hardly there twice.
fs::path NewJournalPath(const fs::path& folder, UtcTime begun)
{
    for (;;) {
        fs::path path = folder / (UtcStamp(begun) + '-' + IdDigits() + std::string(kExtension));
        std::error_code ignored;
        if (!fs::exists(fs::symlink_status(path, ignored)))
            return path;
    }
}

std::optional<JournalName> JournalAt(const fs::path& path)
{
    const std::string text = AsciiName(path);
    std::string_view name = text;
    if (!name.ends_with(kExtension) || !IsId(name.substr(0, std::min(kIdLength, name.size()))))
        return std::nullopt;
    name.remove_suffix(kExtension.size());
    JournalName journal{std::string(name.substr(0, kIdLength)), path, std::nullopt};
    name.remove_prefix(kIdLength);
    if (name.empty())
        return journal;
    journal.dropped = name.front() == '_' ? TimeOfStamp(name.substr(1)) : std::nullopt;
    return journal.dropped ? std::optional(std::move(journal)) : std::nullopt;
}

UtcTime BegunAt(const JournalName& journal)
{
    return TimeOfStamp(std::string_view(journal.id).substr(0, kStampLength)).value_or(UtcTime());
}

std::vector<JournalName> JournalsIn(const fs::path& folder)
{
    std::vector<JournalName> journals;
    std::error_code fault;
    for (fs::directory_iterator entry(folder, fault), end; !fault && entry != end; entry.increment(fault))
        if (auto journal = JournalAt(entry->path()))
            journals.push_back(*std::move(journal));
    std::sort(journals.begin(), journals.end(),
              [](const JournalName& a, const JournalName& b) { return a.path < b.path; });
    return journals;
}

/// Some systems let only those hold a file who may write it.
std::optional<HeldJournal> OpenJournal(const fs::path& path)
{
    std::error_code ignored;
    if (!fs::is_regular_file(fs::symlink_status(path, ignored)))
        return std::nullopt; // before it is opened: a device may mind even that
    HeldJournal journal{CFile(path, CFile::Mode::Read)};
    if (!journal.file.IsOwn())
        return std::nullopt;
    journal.holder = journal.file.Hold();
    if (journal.holder == Holder::Unknown)
        if (CFile writable(path, CFile::Mode::ReadWrite); writable.IsOpen()) {
            journal.holder = writable.Hold();
            journal.file = std::move(writable);
        }
    if (!journal.file.IsAt(path) || !journal.file.IsOwn())
        return std::nullopt; // a link, or one that went meanwhile
    return journal;
}

bool MoveToDropped(const fs::path& path, UtcTime now, std::error_code& fault)
{
    const auto journal = JournalAt(path);
    const fs::path folder = path.parent_path() / "dropped";
    if (!journal || !MakeFolder(folder, fault))
        return false;
    fs::rename(path, folder / (journal->id + '_' + UtcStamp(now) + std::string(kExtension)), fault);
    return !fault;
}

bool MakeFolder(const fs::path& folder, std::error_code& fault)
{
    fault.clear();
    if (MakePrivateFolder(folder))
        return true;
    fs::path missing = folder;
    while (missing.has_relative_path() && IsMissing(missing.parent_path()))
        missing = missing.parent_path();
    std::error_code ignored;
    if (!folder.empty() && IsMissing(folder))
        fs::create_directory(missing, fault); // which says why
    else
        fault = std::make_error_code(fs::is_directory(folder, ignored) ? std::errc::permission_denied
                                                                       : std::errc::not_a_directory);
    if (!fault)
        fault = std::make_error_code(std::errc::io_error);
    return false;
}
