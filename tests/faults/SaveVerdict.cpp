#include "tests/faults/SaveVerdict.h"

#include "files/FileType.h"
#include "files/PagedReader.h"
#include "files/PagedRecipeFile.h"

#include <algorithm>
#include <utility>

namespace fs = std::filesystem;

namespace {

std::byte ByteOr0(const Bytes& bytes, std::size_t index)
{
    return index < bytes.size() ? bytes[index] : std::byte{0};
}

/// Whether each byte of `bytes` is that of one of the others, which are zero past their ends, or zero if that is fine.
bool IsMixOf(const Bytes& bytes, const Bytes& one, const Bytes& other, bool zeroIsFine)
{
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const bool isZero = zeroIsFine && bytes[i] == std::byte{0};
        if (!isZero && bytes[i] != ByteOr0(one, i) && bytes[i] != ByteOr0(other, i))
            return false;
    }
    return true;
}

/// All words that the paged file holds; nothing when it is damaged.
std::optional<Bytes> PagedWords(const SavePlace& place, PagedKind kind, const Bytes& content)
{
    const fs::path copy = place.folder / "copy";
    WriteAll(copy, content);
    Bytes words;
    CPagedReader file;
    const auto length = file.Open(copy, kind) ? file.LogicalBytes() : std::nullopt;
    words.resize(static_cast<std::size_t>(length.value_or(0)));
    const bool isSound = length && file.Read(WordAddress(0), words);
    fs::remove(copy);
    return isSound ? std::optional(std::move(words)) : std::nullopt;
}

} // namespace

bool TellsTear(const FaultRun& run)
{
    return run.result.out == "torn\n" || run.result.error.find("may hold old and new words") != std::string::npos;
}

CSaveVerdict::CSaveVerdict(const SavePath& path, std::optional<Bytes> old, Bytes fresh)
    : m_path(path),
      m_old(std::move(old)),
      m_new(std::move(fresh))
{
}

std::string CSaveVerdict::ComplaintOf(const SavePlace& place, const Fault& fault, const FaultRun& run) const
{
    const int exitCode = run.result.exitCode;
    const bool isKilled = exitCode == -1 && fault.Kills() && !run.failed.empty();
    if (exitCode != 0 && exitCode != m_path.failure && !isKilled)
        return "ended with " + std::to_string(exitCode) + ": " + run.result.error;
    std::string complaint = exitCode == 0 ? ComplaintOfSuccess(place) : ComplaintOfTarget(place, fault, run);
    if (complaint.empty() && exitCode == m_path.failure && *m_path.message != '\0')
        complaint = ComplaintOfMessage(run);
    if (complaint.empty() && exitCode == m_path.failure && m_path.tellsTears && !TellsTear(run) &&
        HoldsOldAndNew(place))
        complaint = "holds old and new words, and nobody is told";
    return complaint.empty() ? ComplaintOfRest(place, fault, run) : complaint;
}

std::string CSaveVerdict::ComplaintOfSuccess(const SavePlace& place) const
{
    return BytesIn(place.Disk(m_path.target)) == m_new ? "" : "told as saved, and is not";
}

std::string CSaveVerdict::ComplaintOfTarget(const SavePlace& place, const Fault& fault, const FaultRun& run) const
{
    const auto bytes = BytesIn(place.Disk(m_path.target));
    if (bytes == m_old || bytes == m_new)
        return "";
    if (!bytes)
        return "the file is gone";
    // Only a torn write, a kill, or a disk that refuses to take back what it gave leaves anything else.
    const bool isTorn = fault.Kills() || fault.TearsWrites() || run.HasFailed("ftruncate") || run.HasFailed("remove");
    switch (m_path.leaves) {
    case Leaves::OldOrNew:
        return "neither the old nor the new file";
    case Leaves::Copied:
    case Leaves::InPlace:
        return isTorn && IsMix(*bytes) ? "" : "neither the old nor the new file, nor a mix that may be";
    case Leaves::InRuns: {
        const bool mayBeMix = isTorn || (TellsTear(run) && run.failed.front() != "posix_fallocate");
        return mayBeMix && IsMix(*bytes) ? "" : "neither the old nor the new file, nor a mix that may be";
    }
    case Leaves::Emptied:
        return IsMix(*bytes) ? "" : "something else than the new file as far as it was written";
    case Leaves::Paged:
        if (!isTorn && run.failed.front() == "posix_fallocate")
            return "had no room, and yet is not the old file";
        return IsSoundMix(place) ? "" : "damaged, or with words that are neither old nor new";
    }
    return "unknown";
}

std::string CSaveVerdict::ComplaintOfMessage(const FaultRun& run) const
{
    const std::string& text = run.result.error;
    const auto lines = std::count(text.begin(), text.end(), '\n');
    return lines >= 1 && lines <= m_path.lines && text.find(m_path.message) != std::string::npos ? ""
                                                                                                 : "told so: " + text;
}

/// Beside the target there is nothing new, except a complete file or a lock that could not be removed, or a file that
/// is the only whole one.
std::string CSaveVerdict::ComplaintOfRest(const SavePlace& place, const Fault& fault, const FaultRun& run) const
{
    const auto target = BytesIn(place.Disk(m_path.target));
    bool hasWhole = false;
    for (const auto& entry : fs::directory_iterator(place.folder / "disk")) {
        const std::string name = entry.path().filename().string();
        if (name == m_path.target)
            continue;
        const bool mayBeInPart = fault.Kills() || run.HasFailed("remove");
        const bool isLock = name == std::string(m_path.target) + ".lock"; // of a library: a sign that holds nothing
        if (isLock && mayBeInPart && ReadAll(entry.path()).empty())
            continue;
        const bool isCopy = m_path.makesCopy && name == std::string(m_path.target) + ".bak";
        if (isCopy && (mayBeInPart || ReadAll(entry.path()) == m_old))
            continue;
        hasWhole = hasWhole || ReadAll(entry.path()) == m_new;
        const bool isKept = mayBeInPart || (m_path.leaves == Leaves::Copied && hasWhole);
        if (!name.starts_with("vantor-") || !isKept)
            return "leaves " + name;
    }
    const bool isWhole = target == m_old || target == m_new;
    return m_path.leaves != Leaves::Copied || isWhole || hasWhole ? "" : "nothing whole is left";
}

bool CSaveVerdict::IsMix(const Bytes& bytes) const
{
    const Bytes old = m_old.value_or(Bytes());
    return bytes.size() <= std::max(old.size(), m_new.size()) &&
           IsMixOf(bytes, old, m_new, m_path.leaves == Leaves::Emptied);
}

bool CSaveVerdict::IsSoundMix(const SavePlace& place) const
{
    const auto words = WordsOf(place, BytesIn(place.Disk(m_path.target)));
    const auto before = WordsOf(place, m_old);
    const auto after = WordsOf(place, m_new);
    return words && before && after && IsMixOf(*words, *before, *after, false);
}

/// What a file with these bytes holds; nothing when it is damaged.
std::optional<Bytes> CSaveVerdict::WordsOf(const SavePlace& place, const std::optional<Bytes>& content) const
{
    const Bytes bytes = content.value_or(Bytes());
    return m_path.leaves == Leaves::Paged ? PagedWords(place, KindOf(FileTypeOf(m_path.target).value()), bytes) : bytes;
}

/// Behind the end of the old file there are no old words.
bool CSaveVerdict::HoldsOldAndNew(const SavePlace& place) const
{
    const auto old = WordsOf(place, m_old).value_or(Bytes());
    const auto fresh = WordsOf(place, m_new).value_or(Bytes());
    const auto words = WordsOf(place, BytesIn(place.Disk(m_path.target))).value_or(Bytes());
    const bool hasOld = words.size() >= old.size() && std::equal(old.begin(), old.end(), words.begin());
    return words != fresh && !hasOld;
}
