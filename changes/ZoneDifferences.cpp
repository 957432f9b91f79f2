#include "changes/ZoneDifferences.h"

#include "changes/CellDifferences.h"
#include "files/SameBytes.h"
#include "files/StretchCoding.h"

#include <algorithm>
#include <utility>

namespace {

using Bytes = std::span<const std::byte>;

constexpr std::size_t kPieceBytes = std::size_t{256} << 10;
constexpr std::uint64_t kMostRunWords = 16; // that a record has

bool IsZero(Bytes bytes)
{
    return std::all_of(bytes.begin(), bytes.end(), [](std::byte b) { return b == std::byte{0}; });
}

/// What of `bytes`, which begin at `begin` in a file of `count` bytes, lies within it.
Bytes WithinFile(Bytes bytes, std::uint64_t begin, std::uint64_t count)
{
    return bytes.first(static_cast<std::size_t>(std::min<std::uint64_t>(count - std::min(count, begin), bytes.size())));
}

/// The bytes of `words` from `begin` to `end`, as far as they go.
Bytes Part(Bytes words, std::uint64_t begin, std::uint64_t end)
{
    const auto first = static_cast<std::size_t>(std::min<std::uint64_t>(begin, words.size()));
    const auto last = static_cast<std::size_t>(std::min<std::uint64_t>(end, words.size()));
    return words.subspan(first, last - first);
}

/// Whether the longer one only has zeros more.
bool AreEqualButForZeros(Bytes one, Bytes other)
{
    const std::size_t common = std::min(one.size(), other.size());
    return AreEqual(one.first(common), other.first(common)) && IsZero(one.subspan(common)) &&
           IsZero(other.subspan(common));
}

} // namespace

CRunDifferences::CRunDifferences(WordPair words, CChangeTaker& taker)
    : m_words(words),
      m_taker(taker),
      m_before(kPieceBytes),
      m_after(kPieceBytes)
{
}

ZoneEnd CRunDifferences::GoOver(std::uint64_t begin, std::uint64_t end, CProgress& progress)
{
    while (begin < end && !m_isEnough) {
        const std::uint64_t pieceEnd = std::min(end, begin - begin % kPieceBytes + kPieceBytes);
        const auto length = static_cast<std::size_t>(pieceEnd - begin);
        const std::size_t whole = length + length % 2;
        const auto before = std::span(m_before).first(whole);
        const auto after = std::span(m_after).first(whole);
        if (!m_words.before.Read(begin, before))
            return ZoneEnd::NoBefore;
        if (!m_words.after.Read(begin, after))
            return ZoneEnd::NoAfter;
        const std::size_t compared = MayDiffer(begin, pieceEnd, whole) ? whole : 0;
        for (std::size_t i = 0; i < compared && !m_isEnough; i += 2)
            CompareWord((begin + i) / 2, before.subspan(i, 2), after.subspan(i, 2));
        begin = pieceEnd;
        m_isEnough = m_isEnough || !progress.Advance(begin, m_words.LongerCount());
    }
    HandOver();
    return m_isEnough ? ZoneEnd::Enough : ZoneEnd::Done;
}

bool CRunDifferences::MayDiffer(std::uint64_t begin, std::uint64_t end, std::size_t length) const
{
    const std::uint64_t before = m_words.before.Count();
    const std::uint64_t after = m_words.after.Count();
    const bool onlyOneEnds =
        !m_words.arePaged && std::min(before, end) != std::min(after, end) && std::max(before, after) > begin;
    return onlyOneEnds || !AreEqual(std::span(m_before).first(length), std::span(m_after).first(length));
}

void CRunDifferences::CompareWord(std::uint64_t word, Bytes before, Bytes after)
{
    const Bytes old = WithinFile(before, 2 * word, m_words.before.Count());
    const Bytes fresh = WithinFile(after, 2 * word, m_words.after.Count());
    const bool isSame = AreEqual(before, after);
    const bool isCut = old.size() % 2 != fresh.size() % 2; // a word that ends half-way on one side
    if (!isSame || (isCut && !m_words.arePaged))
        AddToRun(word, old, fresh);
    else if (old.size() != fresh.size() && !m_words.arePaged)
        AddZero(word);
}

void CRunDifferences::AddToRun(std::uint64_t word, Bytes before, Bytes after)
{
    if (m_pending.zeros != 0 || word != m_next || m_count == kMostRunWords)
        HandOver();
    if (m_count == 0)
        m_pending.address = WordAddress(static_cast<std::int64_t>(word));
    m_pending.oldWords.insert(m_pending.oldWords.end(), before.begin(), before.end());
    m_pending.newWords.insert(m_pending.newWords.end(), after.begin(), after.end());
    ++m_count;
    m_next = word + 1;
}

void CRunDifferences::AddZero(std::uint64_t word)
{
    if (m_pending.zeros == 0 || word != m_next)
        HandOver();
    if (m_count == 0)
        m_pending.address = WordAddress(static_cast<std::int64_t>(word));
    m_pending.zeros += m_words.after.Count() > m_words.before.Count() ? 1 : -1;
    ++m_count;
    m_next = word + 1;
}

void CRunDifferences::HandOver()
{
    if (m_count > 0 && !m_isEnough)
        m_isEnough = !m_taker.Take(m_pending);
    m_pending = {};
    m_count = 0;
}

CValueDifferences::CValueDifferences(FileType type, std::span<const FileTable> tables, std::size_t table,
                                     WordPair words, CChangeTaker& taker)
    : m_type(type),
      m_layout(tables[table].layout),
      m_table(static_cast<std::int32_t>(table)),
      m_words(words),
      m_taker(taker),
      m_before(type, m_layout, words.before),
      m_after(type, m_layout, words.after)
{
}

ZoneEnd CValueDifferences::GoOver(CProgress& progress)
{
    const std::int32_t atOnce = RowsWithin(kPieceBytes, m_layout);
    const std::uint64_t held = m_layout.BytesWithin(m_words.LongerCount());
    std::int32_t count = 0;
    for (std::int32_t first = 0; first < m_layout.RowCount() && m_layout.BytesBefore({first, 0}) < held;
         first += count) {
        count = std::min(atOnce, m_layout.RowCount() - first);
        if (!m_before.Show(first, count))
            return ZoneEnd::NoBefore;
        if (!m_after.Show(first, count))
            return ZoneEnd::NoAfter;
        const std::uint64_t done = m_layout.FirstByte().number + m_layout.BytesBefore({first + count, 0});
        if (!ComparePiece(first, count) || !progress.Advance(done, m_words.LongerCount()))
            return ZoneEnd::Enough;
    }
    return ZoneEnd::Done;
}

bool CValueDifferences::AreEqual(std::uint64_t begin, std::uint64_t end)
{
    const Bytes before = Part(m_before.Words(), begin, end);
    const Bytes after = Part(m_after.Words(), begin, end);
    return ::AreEqual(before, after) || (m_words.arePaged && AreEqualButForZeros(before, after));
}

bool CValueDifferences::ComparePiece(std::int32_t first, std::int32_t count)
{
    const std::uint64_t rowBytes = m_layout.BytesBefore({1, 0});
    if (AreEqual(0, rowBytes * static_cast<std::uint64_t>(count)))
        return true;
    std::uint64_t begin = 0;
    for (std::int32_t row = 0; row < count; ++row, begin += rowBytes)
        if (!AreEqual(begin, begin + rowBytes) && !CompareRow(first, row))
            return false;
    return true;
}

bool CValueDifferences::CompareRow(std::int32_t first, std::int32_t row)
{
    for (std::uint32_t column = 0; column < m_layout.Columns().size(); ++column) {
        const CellPlace place{row, column};
        const std::uint64_t begin = m_layout.BytesBefore(place);
        const std::size_t length = BytesOfCell(m_layout, place);
        if (!AreEqual(begin, begin + length) && !m_taker.Take(RecordOf(first, place, begin, length)))
            return false;
    }
    return true;
}

/// Of the value of `length` bytes at `place` in a window that begins with row `first`; good until the next one.
const ChangeRecord& CValueDifferences::RecordOf(std::int32_t first, CellPlace place, std::uint64_t begin,
                                                std::size_t length)
{
    SetPlace(m_layout, m_type, {first + place.row, place.column}, m_record);
    m_record.table = m_table;
    const auto takeSide = [&](CRowWindow& side, WordRun& words, std::optional<std::u16string>& text) {
        const Bytes held = Part(side.Words(), begin, begin + length);
        words.assign(held.begin(), held.end());
        if (held.size() < length)
            return text.reset();
        if (!text)
            text.emplace();
        text->clear();
        side.Rows().AppendText(place.row, place.column, *text);
    };
    takeSide(m_before, m_record.oldWords, m_record.oldText);
    takeSide(m_after, m_record.newWords, m_record.newText);
    return m_record;
}
