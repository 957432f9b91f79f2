#include "recovery/VersionChain.h"

#include "changes/ChangeLines.h"
#include "text/MessageText.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <variant>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr std::uint64_t kMostBytes = std::uint64_t{1} << 40; // more than any file of words has
constexpr std::size_t kToldOthers = 5;
constexpr std::u16string_view kDamaged = u"what was kept of it is damaged";

bool IsPossible(const ChangeHeader& header, FileType type)
{
    const auto isPossible = [](const std::optional<std::int64_t>& bytes) {
        return bytes && static_cast<std::uint64_t>(*bytes) <= kMostBytes;
    };
    return header.type == type && isPossible(header.bytes) && isPossible(header.newBytes);
}

bool IsPossible(const ChangeRecord& record)
{
    const auto isPossible = [](std::int64_t words) {
        return words >= 0 && static_cast<std::uint64_t>(words) <= kMostBytes / 2;
    };
    return record.address && isPossible(record.address->number) && record.zeros != INT64_MIN &&
           isPossible(record.zeros < 0 ? -record.zeros : record.zeros);
}

/// "RW245, RW700 and 3 more".
std::u16string ListOf(const std::vector<WordAddress>& first, std::uint64_t count)
{
    std::u16string list;
    for (const WordAddress address : first)
        list += FillMessage(list.empty() ? u"RW%d" : u", RW%d", {address.number});
    if (count > first.size())
        list += FillMessage(u" and %d more", {static_cast<std::int64_t>(count - first.size())});
    return list;
}

} // namespace

std::optional<std::u16string> CVersionChain::GoBack(const fs::path& records)
{
    if (!CFile(records, CFile::Mode::Read).IsOwn())
        return u"what was kept of it can't be read";
    std::ifstream input(records, std::ios::binary);
    CChangeReader reader(input);
    const auto header = reader.ReadHeader();
    if (!std::holds_alternative<ChangeHeader>(header) || !IsPossible(std::get<ChangeHeader>(header), m_type))
        return std::u16string(kDamaged);
    if (!HasSize(static_cast<std::uint64_t>(*std::get<ChangeHeader>(header).newBytes)))
        return u"the file has another size than after that change";
    m_oldEnd = 0;
    auto record = reader.Next();
    for (; std::holds_alternative<ChangeRecord>(record); record = reader.Next()) {
        if (!IsPossible(std::get<ChangeRecord>(record)))
            return std::u16string(kDamaged);
        if (!Undo(std::get<ChangeRecord>(record)))
            return u"the file can't be read";
    }
    if (std::holds_alternative<ChangeFault>(record))
        return std::u16string(kDamaged);
    if (m_others > 0)
        return FillMessage(u"words do not hold what was written then: %s", {ListOf(m_firstOthers, m_others)});
    if (!TakeSize(std::get<ChangeHeader>(header)))
        return std::u16string(kDamaged);
    return std::nullopt;
}

/// Of a paged file only words count: pages of zeros may be there or not.
bool CVersionChain::HasSize(std::uint64_t size)
{
    return IsPaged(m_type) ? IsZero(size, m_words.Count()) : m_words.Count() == size;
}

bool CVersionChain::IsZero(std::uint64_t begin, std::uint64_t end)
{
    std::vector<std::byte> piece(CChangedWords::kBlockBytes);
    for (begin -= begin % 2; begin < end; begin += piece.size()) {
        const auto part =
            std::span(piece).first(static_cast<std::size_t>(std::min<std::uint64_t>(piece.size(), end - begin)));
        if (!m_words.Read(begin, part) ||
            std::any_of(part.begin(), part.end(), [](std::byte b) { return b != std::byte{0}; }))
            return false;
    }
    return true;
}

/// Looks at the new words of the record, and puts the old ones in their place. False when they cannot be read.
bool CVersionChain::Undo(const ChangeRecord& record)
{
    const std::uint64_t begin = FirstByteOf(*record.address).number;
    const auto zeroBytes = 2 * static_cast<std::uint64_t>(std::max<std::int64_t>(record.zeros, 0));
    WordRun held(record.newWords.size());
    if (!m_words.Read(begin, held))
        return false;
    const bool isAsLeft = held == record.newWords && IsZero(begin, std::min(begin + zeroBytes, m_words.Count()));
    if (!isAsLeft) {
        ++m_others;
        if (m_firstOthers.size() < kToldOthers)
            m_firstOthers.push_back(*record.address);
    }
    WordRun old = record.oldWords;
    old.resize(std::max(old.size(), held.size())); // what lay behind the end is zero
    const auto oldZeros = 2 * static_cast<std::uint64_t>(std::max<std::int64_t>(-record.zeros, 0));
    if (!record.oldWords.empty() || oldZeros > 0)
        m_oldEnd = std::max(m_oldEnd, begin + std::max<std::uint64_t>(record.oldWords.size(), oldZeros));
    return m_words.Write(begin, old);
}

/// A file that was longer before must have got back all that it had lost.
bool CVersionChain::TakeSize(const ChangeHeader& header)
{
    const auto size = static_cast<std::uint64_t>(*header.bytes);
    if (size > static_cast<std::uint64_t>(*header.newBytes) && m_oldEnd != size)
        return false;
    m_words.SetCount(IsPaged(m_type) ? std::max(size, m_words.Count()) : size);
    return true;
}
