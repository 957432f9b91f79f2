#include "changes/OutsideWords.h"

#include "files/SameBytes.h"

#include <algorithm>
#include <span>
#include <utility>

namespace {

constexpr std::uint64_t kPieceBytes = std::uint64_t{64} << 10;
constexpr std::uint64_t kMostRunWords = 16; // that a record has
constexpr std::uint64_t kWord = 2;

/// The end of the word that byte `count` lies in, or ends.
std::uint64_t WholeWords(std::uint64_t count)
{
    return count + count % kWord;
}

} // namespace

COutsideWords::COutsideWords(std::shared_ptr<CWordBytes> before, std::shared_ptr<CWordBytes> after, Stretch stretch,
                             bool isPaged)
    : m_before(std::move(before)),
      m_after(std::move(after)),
      m_stretch(stretch),
      m_isPaged(isPaged),
      m_end(WholeWords(std::max(m_before->Count(), m_after->Count())))
{
    SkipStretch();
}

void COutsideWords::SkipStretch()
{
    if (m_next >= m_stretch.begin && m_next < m_stretch.end)
        m_next = m_stretch.end;
}

/// A piece lies on one side of the stretch.
std::uint64_t COutsideWords::EndOfPiece() const
{
    const std::uint64_t end = std::min(m_next + kPieceBytes, m_end);
    const bool isBefore = m_next < m_stretch.begin && m_stretch.begin < m_stretch.end;
    return isBefore ? std::min(end, m_stretch.begin) : end;
}

void COutsideWords::CompareNext()
{
    if (IsFinished())
        return;
    const std::uint64_t end = EndOfPiece();
    m_piecesBefore.resize(static_cast<std::size_t>(end - m_next));
    m_piecesAfter.resize(m_piecesBefore.size());
    m_hasFailed = !m_before->Read(m_next, m_piecesBefore) || !m_after->Read(m_next, m_piecesAfter);
    if (m_hasFailed)
        return;
    const bool isInBoth = m_isPaged || end <= std::min(m_before->Count(), m_after->Count());
    if (!isInBoth || !AreEqual(m_piecesBefore, m_piecesAfter))
        for (std::size_t i = 0; i < m_piecesBefore.size(); i += kWord)
            CompareWord((m_next + i) / kWord, &m_piecesBefore[i], &m_piecesAfter[i]);
    m_next = end;
    if (m_next <= m_stretch.begin)
        m_countBefore = m_places.size();
    SkipStretch();
}

void COutsideWords::CompareWord(std::uint64_t word, const std::byte* before, const std::byte* after)
{
    const std::size_t inBefore = BytesOfWord(word, m_before->Count());
    const std::size_t inAfter = BytesOfWord(word, m_after->Count());
    const bool isEqual = std::equal(before, before + kWord, after);
    if (isEqual && inBefore == inAfter)
        return;
    Add(word, isEqual && inBefore + inAfter == kWord && inBefore * inAfter == 0);
}

void COutsideWords::Add(std::uint64_t word, bool isZero)
{
    ++m_words;
    if (m_places.size() > (word * kWord >= m_stretch.end ? m_countBefore : 0)) {
        Place& last = m_places.back();
        const bool mayGrow = last.isZeros == isZero && (isZero || last.count < kMostRunWords);
        if (mayGrow && last.word + last.count == word) {
            ++last.count;
            return;
        }
    }
    m_places.push_back({word, 1, isZero});
}

/// How many of the two bytes are there.
std::size_t COutsideWords::BytesOfWord(std::uint64_t word, std::uint64_t count) const
{
    if (m_isPaged)
        return kWord;
    return static_cast<std::size_t>(std::min(count - std::min(count, kWord * word), kWord));
}

WordRun COutsideWords::WordsAt(CWordBytes& words, const Place& place) const
{
    const std::uint64_t begin = kWord * place.word;
    std::uint64_t end = begin + kWord * place.count;
    if (!m_isPaged)
        end = std::clamp(words.Count(), begin, end);
    WordRun run(static_cast<std::size_t>(WholeWords(end - begin)));
    if (!run.empty() && !words.Read(begin, run))
        return {};
    run.resize(static_cast<std::size_t>(end - begin));
    return run;
}

ChangeRecord COutsideWords::At(std::size_t index) const
{
    const Place& place = m_places[index];
    ChangeRecord record;
    record.address = WordAddress(static_cast<std::int64_t>(place.word));
    if (place.isZeros) {
        const auto count = static_cast<std::int64_t>(place.count);
        record.zeros = m_after->Count() > m_before->Count() ? count : -count;
        return record;
    }
    record.oldWords = WordsAt(*m_before, place);
    record.newWords = WordsAt(*m_after, place);
    return record;
}
