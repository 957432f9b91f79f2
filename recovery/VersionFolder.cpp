#include "recovery/VersionFolder.h"

#include "disk/File.h"
#include "disk/FileNames.h"
#include "disk/TemporaryFile.h"
#include "text/LowerCase.h"
#include "text/PathText.h"
#include "text/Utf8Text.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <set>
#include <system_error>
#include <utility>

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kStampLength = 20;
constexpr std::size_t kHashDigits = 16;
constexpr std::size_t kMostNameBytes = 255; // of any usual file system
constexpr std::size_t kMostExtensionBytes = 16;

constexpr std::string_view kNoteEnd = ".json";
constexpr std::string_view kRecordsEnd = ".jsonl";
constexpr std::string_view kPartEnd = ".part";

/// FNV-1a over the units of the path, low byte first.
std::uint64_t HashOf(const fs::path& path)
{
    std::uint64_t hash = 14695981039346656037U;
    for (const auto unit : path.native())
        for (std::size_t i = 0; i < sizeof(unit); ++i) {
            hash ^= (static_cast<std::uint64_t>(unit) >> (8 * i)) & 0xFF;
            hash *= 1099511628211U;
        }
    return hash;
}

std::string HexOf(std::uint64_t hash)
{
    constexpr char kDigits[] = "0123456789abcdef";
    std::string text(kHashDigits, '0');
    for (auto digit = text.rbegin(); digit != text.rend(); ++digit, hash >>= 4)
        *digit = kDigits[hash & 0xF];
    return text;
}

/// The first bytes of `text` in UTF-8, at most so many, with no character cut.
std::string CutUtf8(std::string text, std::size_t most)
{
    if (text.size() <= most)
        return text;
    while (most > 0 && (static_cast<unsigned char>(text[most]) & 0xC0) == 0x80)
        --most;
    text.resize(most);
    return text;
}

std::string Utf8Of(const fs::path& path)
{
    return ToUtf8(PathText(path));
}

/// The extension of a name, if it is one of a usual length.
std::string ExtensionOf(const std::string& name)
{
    const std::size_t dot = name.rfind('.');
    const bool isOne = dot != std::string::npos && dot > 0 && name.size() - dot <= kMostExtensionBytes;
    return isOne ? name.substr(dot) : std::string();
}

/// What the names of copies end in, so that none is taken for anything else in the folder.
std::string SuffixOf(const std::string& name)
{
    const std::string extension = ExtensionOf(name);
    const std::string lower = ToUtf8(LowerCase(FromUtf8(extension)));
    const bool isTaken = lower == kNoteEnd || lower == kRecordsEnd || lower == kPartEnd;
    return isTaken ? ".copy" + extension : extension;
}

bool RemoveFile(const fs::path& path)
{
    std::error_code fault;
    fs::remove(path, fault);
    return !fault;
}

bool IsThere(const fs::path& path)
{
    std::error_code ignored;
    return fs::exists(fs::symlink_status(path, ignored));
}

} // namespace

fs::path KnownPath(const fs::path& file)
{
    std::error_code fault;
    const fs::path absolute = fs::absolute(file, fault);
    const fs::path target = LinkTarget(fault ? file : absolute);
    fs::path known = fs::weakly_canonical(target, fault);
    return fault ? target.lexically_normal() : known;
}

fs::path PathKey(const fs::path& knownPath)
{
    return IsCaseIgnored() ? PathOfUtf8(ToUtf8(LowerCase(PathText(knownPath)))) : knownPath;
}

fs::path VersionFolderName(const fs::path& knownPath)
{
    const fs::path key = PathKey(knownPath);
    const std::string end = '-' + HexOf(HashOf(key));
    const std::string name = Utf8Of(key.filename());
    if (name.size() + end.size() <= kMostNameBytes)
        return PathOfUtf8(name + end);
    const std::string extension = ExtensionOf(name);
    const std::size_t most = kMostNameBytes - end.size() - extension.size();
    return PathOfUtf8(CutUtf8(name.substr(0, name.size() - extension.size()), most) + extension + end);
}

bool IsVersionFolderName(const fs::path& name)
{
    const std::string text = Utf8Of(name);
    if (text.size() <= kHashDigits || text[text.size() - kHashDigits - 1] != '-')
        return false;
    return text.find_first_not_of("0123456789abcdef", text.size() - kHashDigits) == std::string::npos;
}

CVersionFolder::CVersionFolder(fs::path path) : m_path(std::move(path))
{
    const std::string name = Utf8Of(m_path.filename());
    m_suffix = SuffixOf(name.substr(0, name.size() - std::min(name.size(), kHashDigits + 1)));
}

fs::path CVersionFolder::CopyPath(std::string_view stamp) const
{
    return m_path / PathOfUtf8(std::string(stamp) + m_suffix);
}

fs::path CVersionFolder::RecordsPath(std::string_view stamp) const
{
    return m_path / (std::string(stamp) += kRecordsEnd);
}

fs::path CVersionFolder::NotePath(std::string_view stamp) const
{
    return m_path / (std::string(stamp) += kNoteEnd);
}

fs::path CVersionFolder::PartPath(std::string_view stamp) const
{
    return m_path / (std::string(stamp) += kPartEnd);
}

fs::path CVersionFolder::PathOf(const StoredVersion& version) const
{
    return version.isRecords ? RecordsPath(version.stamp) : CopyPath(version.stamp);
}

/// What the name says; nothing for one that is not of these.
std::optional<CVersionFolder::Entry> CVersionFolder::EntryOf(const fs::path& path) const
{
    const std::string name = Utf8Of(path.filename());
    const auto time = TimeOfStamp(std::string_view(name).substr(0, kStampLength));
    if (!time)
        return std::nullopt;
    const std::string_view end = std::string_view(name).substr(kStampLength);
    const std::array<std::pair<std::string_view, Kind>, 4> kinds{
        {{m_suffix, Kind::Copy}, {kRecordsEnd, Kind::Records}, {kNoteEnd, Kind::Note}, {kPartEnd, Kind::Part}}};
    for (const auto& [known, kind] : kinds)
        if (end == known)
            return Entry{kind, name.substr(0, kStampLength), *time, path};
    return std::nullopt;
}

std::vector<CVersionFolder::Entry> CVersionFolder::Entries() const
{
    std::vector<Entry> entries;
    std::error_code fault; // what cannot be listed holds none
    for (fs::directory_iterator entry(m_path, fault), end; !fault && entry != end; entry.increment(fault))
        if (auto known = EntryOf(entry->path()))
            entries.push_back(std::move(*known));
    return entries;
}

std::vector<StoredVersion> CVersionFolder::Versions() const
{
    std::vector<StoredVersion> versions;
    for (const Entry& entry : Entries()) {
        std::error_code fault;
        const bool isVersion = entry.kind == Kind::Copy || entry.kind == Kind::Records;
        if (!isVersion || !fs::is_regular_file(fs::symlink_status(entry.path, fault)))
            continue;
        const std::uint64_t bytes = fs::file_size(entry.path, fault);
        if (!fault) // it may have gone meanwhile
            versions.push_back({entry.stamp, entry.time, entry.kind == Kind::Records, bytes});
    }
    std::sort(versions.begin(), versions.end(),
              [](const StoredVersion& a, const StoredVersion& b) { return a.stamp < b.stamp; });
    return versions;
}

std::optional<UtcTime> CVersionFolder::Newest() const
{
    std::optional<UtcTime> newest;
    for (const Entry& entry : Entries())
        newest = std::max(newest, std::optional(entry.time));
    return newest;
}

void CVersionFolder::RemoveLeftOvers() const
{
    ::RemoveLeftOvers(m_path); // of files that grow before they become a part
    std::set<std::string> begun;
    std::set<std::string> complete;
    for (const Entry& entry : Entries())
        (entry.kind == Kind::Copy || entry.kind == Kind::Records ? complete : begun).insert(entry.stamp);
    for (const std::string& stamp : begun)
        if (!complete.contains(stamp))
            RemoveIfLeftOver(stamp);
}

/// Who makes a version holds its note from before there is anything else until all is complete.
void CVersionFolder::RemoveIfLeftOver(std::string_view stamp) const
{
    const fs::path notePath = NotePath(stamp);
    CFile note(notePath, CFile::Mode::Read);
    const bool isGone = !note.IsOpen() && IsMissing(notePath);
    if (!isGone && (note.Hold() != Holder::ThisFile || !note.IsAt(notePath) || !note.IsOwn()))
        return;
    if (IsThere(CopyPath(stamp)) || IsThere(RecordsPath(stamp))) // it was completed meanwhile
        return;
    RemoveFile(PartPath(stamp));
    if (!isGone)
        RemoveFile(notePath);
}

bool CVersionFolder::Remove(const StoredVersion& version) const
{
    if (!RemoveFile(PathOf(version)))
        return false;
    RemoveFile(NotePath(version.stamp)); // last: without it the version would still be one
    return true;
}

bool CVersionFolder::RemoveAll() const
{
    bool isDone = true;
    for (const StoredVersion& version : Versions())
        isDone = Remove(version) && isDone;
    RemoveLeftOvers();
    std::error_code notEmpty;
    fs::remove(m_path, notEmpty);
    return isDone;
}
