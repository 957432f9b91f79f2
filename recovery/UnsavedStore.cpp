#include "recovery/UnsavedStore.h"

#include "disk/TemporaryFile.h"
#include "recovery/JournalPlace.h"
#include "recovery/JournalReader.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace fs = std::filesystem;

namespace {

using Kind = JournalContent::Kind;

constexpr std::chrono::hours kOpenAtMost{24}; // without an edit, where nobody can tell
constexpr std::chrono::days kKeptDropped{30};

/// Whether its program has the journal open, as far as that can be told.
bool IsOpen(Holder holder, UtcTime lastEdit, UtcTime now)
{
    return holder == Holder::AnotherFile || (holder == Holder::Unknown && now - lastEdit < kOpenAtMost);
}

/// The same, of a journal that is not read yet.
bool IsOpen(const HeldJournal& journal, UtcTime now)
{
    if (journal.holder != Holder::Unknown)
        return journal.holder == Holder::AnotherFile;
    return IsOpen(journal.holder, ReadJournal(journal.file).work.lastEdit, now);
}

std::optional<UnsavedEntry> EntryOf(const JournalName& name, UtcTime now)
{
    auto journal = OpenJournal(name.path);
    if (!journal)
        return std::nullopt;
    if (journal->holder == Holder::ThisFile) { // held no longer than the question takes
        journal->file.Open(name.path, CFile::Mode::Read);
        if (!journal->file.IsAt(name.path))
            return std::nullopt;
    }
    JournalContent content = ReadJournal(journal->file);
    UnsavedEntry entry;
    entry.id = name.id;
    entry.edits = content.work.cells.size();
    entry.lastEdit = content.work.lastEdit;
    if (content.kind == Kind::Readable)
        entry.header = std::move(content.work.header);
    else
        entry.lastEdit = BegunAt(name);
    if (name.dropped)
        entry.state = UnsavedState::Dropped;
    else if (IsOpen(journal->holder, entry.lastEdit, now))
        entry.state = UnsavedState::Open;
    entry.isDamaged = content.kind != Kind::Readable || (content.isCut && entry.state != UnsavedState::Open);
    return entry;
}

/// The journal of that ID, dropped or not.
std::optional<JournalName> Find(const fs::path& dataFolder, std::string_view id)
{
    if (dataFolder.empty())
        return std::nullopt;
    for (const fs::path& folder : {UnsavedFolder(dataFolder), DroppedFolder(dataFolder)})
        for (JournalName& journal : JournalsIn(folder))
            if (journal.id == id)
                return std::move(journal);
    return std::nullopt;
}

bool RemoveFile(const fs::path& path)
{
    std::error_code fault;
    return fs::remove(path, fault);
}

} // namespace

CClaimedWork::CClaimedWork(CFile file, fs::path path, std::string id, UnsavedWork work)
    : m_file(std::move(file)),
      m_path(std::move(path)),
      m_id(std::move(id)),
      m_work(std::move(work))
{
}

bool CClaimedWork::Remove()
{
    const bool isThere = m_file.IsAt(m_path);
    const bool isRemoved = isThere && RemoveFile(m_path);
    m_file = CFile();
    return isRemoved || (isThere && RemoveFile(m_path)); // a system may only remove what is not open
}

bool CClaimedWork::Drop(UtcTime now)
{
    std::error_code fault;
    const bool isThere = m_file.IsAt(m_path);
    const bool isDropped = isThere && MoveToDropped(m_path, now, fault);
    m_file = CFile();
    return isDropped || (isThere && MoveToDropped(m_path, now, fault)); // likewise for moving
}

std::vector<UnsavedEntry> CUnsavedStore::List(UtcTime now) const
{
    std::vector<UnsavedEntry> entries;
    if (m_dataFolder.empty())
        return entries;
    for (const fs::path& folder : {UnsavedFolder(m_dataFolder), DroppedFolder(m_dataFolder)})
        for (const JournalName& name : JournalsIn(folder))
            if (auto entry = EntryOf(name, now))
                entries.push_back(*std::move(entry));
    return entries;
}

bool CUnsavedStore::Has(std::string_view id) const
{
    const auto name = Find(m_dataFolder, id);
    return name && OpenJournal(name->path);
}

std::optional<UnsavedWork> CUnsavedStore::Read(std::string_view id) const
{
    const auto name = Find(m_dataFolder, id);
    const auto journal = name ? OpenJournal(name->path) : std::nullopt;
    if (!journal)
        return std::nullopt;
    JournalContent content = ReadJournal(journal->file);
    return content.kind == Kind::Readable ? std::optional(std::move(content.work)) : std::nullopt;
}

std::optional<CClaimedWork> CUnsavedStore::ClaimOldest(UtcTime now) const
{
    if (m_dataFolder.empty())
        return std::nullopt;
    for (const JournalName& name : JournalsIn(UnsavedFolder(m_dataFolder))) {
        auto journal = OpenJournal(name.path);
        if (!journal || journal->holder == Holder::AnotherFile)
            continue;
        JournalContent content = ReadJournal(journal->file);
        const bool isReadable = content.kind == Kind::Readable;
        if (IsOpen(journal->holder, isReadable ? content.work.lastEdit : BegunAt(name), now))
            continue;
        if (isReadable && !content.work.cells.empty())
            return CClaimedWork(std::move(journal->file), name.path, name.id, std::move(content.work));
        std::error_code ignored;
        if (isReadable && !content.isCut)
            RemoveFile(name.path);
        else if (isReadable || content.kind == Kind::Damaged)
            MoveToDropped(name.path, now, ignored);
    }
    return std::nullopt;
}

CUnsavedStore::Result CUnsavedStore::Drop(std::string_view id, UtcTime now) const
{
    const auto name = Find(m_dataFolder, id);
    const auto journal = name ? OpenJournal(name->path) : std::nullopt;
    if (!journal)
        return Result::Missing;
    if (name->dropped)
        return Result::Done;
    if (IsOpen(*journal, now))
        return Result::Open;
    std::error_code fault;
    return MoveToDropped(name->path, now, fault) ? Result::Done : Result::Failed;
}

CUnsavedStore::Result CUnsavedStore::Remove(std::string_view id, UtcTime now) const
{
    const auto name = Find(m_dataFolder, id);
    const auto journal = name ? OpenJournal(name->path) : std::nullopt;
    if (!journal)
        return Result::Missing;
    if (!name->dropped && IsOpen(*journal, now))
        return Result::Open;
    return RemoveFile(name->path) ? Result::Done : Result::Failed;
}

void CUnsavedStore::RemoveOldDropped(UtcTime now) const
{
    if (m_dataFolder.empty())
        return;
    for (const JournalName& name : JournalsIn(DroppedFolder(m_dataFolder)))
        if (name.dropped && now - *name.dropped > kKeptDropped && OpenJournal(name.path))
            RemoveFile(name.path);
    RemoveLeftOvers(UnsavedFolder(m_dataFolder));
}
