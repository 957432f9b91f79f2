#include "changes/WordDifferences.h"

#include "text/PathText.h"

#include <algorithm>
#include <utility>

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kPieceBytes = std::size_t{64} << 10;
constexpr std::uint64_t kMostRunWords = 16; // that a record has
constexpr std::uint64_t kBlock = CChangedWords::kBlockBytes;

/// How many of the two bytes of `word` are there.
std::size_t BytesOfWord(std::uint64_t word, std::uint64_t count)
{
    return static_cast<std::size_t>(std::min<std::uint64_t>(count - std::min(count, 2 * word), 2));
}

/// The bytes of some words, those behind the end left out.
std::optional<WordRun> ReadWords(CWordBytes& bytes, std::uint64_t word, std::uint64_t count)
{
    const std::uint64_t begin = std::min(2 * word, bytes.Count());
    const std::uint64_t end = std::min(2 * (word + count), bytes.Count());
    WordRun run(static_cast<std::size_t>(end - begin));
    if (!run.empty() && !bytes.Read(begin, run))
        return std::nullopt;
    return run;
}

} // namespace

CWordDifferences::CWordDifferences(CWordBytes& before, CWordBytes& after, FileType type, fs::path path, bool)
    : m_before(before),
      m_after(after),
      m_type(type),
      m_path(std::move(path))
{
}

CWordDifferences::CWordDifferences(CWordBytes& before, CWordBytes& after, FileType type, fs::path path)
    : CWordDifferences(before, after, type, std::move(path), true)
{
    Compare(0, std::max(before.Count(), after.Count()));
    AddZeros();
}

CWordDifferences::CWordDifferences(CWordBytes& before, CWordBytes& after, FileType type, fs::path path,
                                   std::span<const std::uint64_t> blocks)
    : CWordDifferences(before, after, type, std::move(path), true)
{
    const std::uint64_t end = std::max(before.Count(), after.Count());
    const std::uint64_t shorter = std::min(before.Count(), after.Count()) / 2 * 2;
    std::vector<std::uint64_t> begins(blocks.begin(), blocks.end());
    begins.push_back(shorter - shorter % kBlock); // here a word may be cut on one side
    if (end > 0)
        begins.push_back((end - 1) - (end - 1) % kBlock);
    std::sort(begins.begin(), begins.end());
    begins.erase(std::unique(begins.begin(), begins.end()), begins.end());
    for (const std::uint64_t begin : begins)
        Compare(begin, std::min(begin + kBlock, end));
    AddZeros();
}

/// Adds the words from `begin` to `end` that differ; zero words that one side alone has are left to AddZeros.
void CWordDifferences::Compare(std::uint64_t begin, std::uint64_t end)
{
    std::vector<std::byte> before(kPieceBytes);
    std::vector<std::byte> after(kPieceBytes);
    for (; m_isRead && begin < end; begin += kPieceBytes) {
        const auto length = static_cast<std::size_t>(std::min<std::uint64_t>(kPieceBytes, end - begin));
        const std::size_t whole = length + length % 2;
        m_isRead =
            m_before.Read(begin, std::span(before).first(whole)) && m_after.Read(begin, std::span(after).first(whole));
        const bool isEqual =
            std::equal(before.begin(), before.begin() + static_cast<std::ptrdiff_t>(whole), after.begin());
        if (!m_isRead || (isEqual && !HasCutWord(begin, begin + whole)))
            continue;
        for (std::size_t i = 0; i < whole; i += 2) {
            const std::uint64_t word = (begin + i) / 2;
            const bool isCut = BytesOfWord(word, m_before.Count()) % 2 != BytesOfWord(word, m_after.Count()) % 2;
            if (isCut || before[i] != after[i] || before[i + 1] != after[i + 1])
                Add(word);
        }
    }
}

/// Whether there is a word between that ends half-way on one side alone.
bool CWordDifferences::HasCutWord(std::uint64_t begin, std::uint64_t end) const
{
    const auto isCutAt = [&](std::uint64_t count) { return count % 2 != 0 && count > begin && count <= end; };
    return m_before.Count() != m_after.Count() && (isCutAt(m_before.Count()) || isCutAt(m_after.Count()));
}

void CWordDifferences::Add(std::uint64_t word)
{
    if (!m_places.empty()) {
        Place& last = m_places.back();
        if (last.word + last.count == word && last.count < kMostRunWords) {
            ++last.count;
            return;
        }
    }
    m_places.push_back({word, 1, false});
}

/// Fills the gaps between the words that only one side has: there are its zeros.
void CWordDifferences::AddZeros()
{
    const std::uint64_t first = (std::min(m_before.Count(), m_after.Count()) + 1) / 2;
    const std::uint64_t end = std::max(m_before.Count(), m_after.Count()) / 2;
    std::vector<Place> places;
    std::uint64_t next = first;
    const auto fill = [&](std::uint64_t upTo) {
        if (next < upTo)
            places.push_back({next, upTo - next, true});
    };
    for (const Place& place : m_places) {
        fill(std::min(place.word, end));
        places.push_back(place);
        next = std::max(next, place.word + place.count);
    }
    fill(end);
    m_places = std::move(places);
}

std::uint64_t CWordDifferences::WordCount() const
{
    std::uint64_t count = 0;
    for (const Place& place : m_places)
        count += place.count;
    return count;
}

std::optional<CWordRuns> CWordDifferences::Runs() const
{
    CWordRuns runs;
    for (const Place& place : m_places) {
        const std::uint64_t last = place.word + place.count - 1; // of zeros the last word is enough: gaps are zeros
        const auto bytes = place.isZeros ? ReadWords(m_after, last, 1) : ReadWords(m_after, place.word, place.count);
        if (!bytes)
            return std::nullopt;
        runs.Append(WordAddress(static_cast<std::int64_t>(place.isZeros ? last : place.word)), *bytes);
    }
    return runs;
}

ChangeRecord CWordDifferences::At(std::size_t index) const
{
    const Place& place = m_places[index];
    ChangeRecord record;
    record.address = WordAddress(static_cast<std::int64_t>(place.word));
    if (place.isZeros) {
        const auto count = static_cast<std::int64_t>(place.count);
        record.zeros = m_after.Count() > m_before.Count() ? count : -count;
        return record;
    }
    record.oldWords = ReadWords(m_before, place.word, place.count).value_or(WordRun());
    record.newWords = ReadWords(m_after, place.word, place.count).value_or(WordRun());
    return record;
}

ChangeHeader CWordDifferences::Header() const
{
    return {.file = PathText(m_path.filename()),
            .type = m_type,
            .bytes = static_cast<std::int64_t>(m_before.Count()),
            .newBytes = static_cast<std::int64_t>(m_after.Count()),
            .tables = {}};
}
