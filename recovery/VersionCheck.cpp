#include "recovery/VersionCheck.h"

#include <algorithm>
#include <cstdint>

namespace {

constexpr std::u16string_view kUnknown = u"What is about to change is not known";
constexpr std::u16string_view kChanged = u"The file was changed by another program";

} // namespace

CCheckedChanges::CCheckedChanges(const CChangeList& changes, FileType type, const std::filesystem::path& file)
    : m_changes(changes),
      m_isPaged(IsPaged(type)),
      m_words(type, file),
      m_fault(FaultOf(changes.Header(), type))
{
}

ChangeRecord CCheckedChanges::At(std::size_t index) const
{
    ChangeRecord record = m_changes.At(index);
    if (m_fault.empty())
        m_fault = FaultOf(record);
    return record;
}

std::u16string CCheckedChanges::FaultOf(const ChangeHeader& header, FileType type) const
{
    if (!m_changes.IsComplete() || header.type != type || !header.bytes || !header.newBytes)
        return std::u16string(kUnknown);
    if (!m_words.IsOpen())
        return u"The file can't be read";
    return m_words.Count() == static_cast<std::uint64_t>(*header.bytes) ? std::u16string() : std::u16string(kChanged);
}

/// The file holds the old words of the record, and where that has none it has ended, or a page is missing.
std::u16string CCheckedChanges::FaultOf(const ChangeRecord& record) const
{
    if (!record.address || (record.oldWords.empty() && record.newWords.empty() && record.zeros == 0))
        return std::u16string(kUnknown);
    const std::uint64_t begin = FirstByteOf(*record.address).number;
    const std::size_t size = std::max(record.oldWords.size(), record.newWords.size());
    m_held.resize(size);
    WordRun old = record.oldWords;
    old.resize(size); // behind the end are zeros
    const bool isHeld = m_words.Read(begin, m_held) && m_held == old;
    return isHeld && (m_isPaged || EndsWithFile(record)) ? std::u16string() : std::u16string(kChanged);
}

/// Whether the file has just the old words of the record of those that it tells of.
bool CCheckedChanges::EndsWithFile(const ChangeRecord& record) const
{
    const std::uint64_t end = FirstByteOf(*record.address).number + record.oldWords.size();
    if (record.newWords.size() > record.oldWords.size() || record.zeros > 0)
        return end >= m_words.Count();
    return record.oldWords.empty() || end <= m_words.Count();
}
