#pragma once

#include "changes/ChangeRecord.h"
#include "files/WordBytes.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

/// In what words two files of one type differ outside of a stretch of them, found out piece by piece: in runs of at
/// most 16 words, and as zeros where one of them alone has zero words. In a paged file such zeros are no difference.
class COutsideWords {
public:
    /// What is not compared, in bytes from the begin of the file on; even.
    struct Stretch {
        std::uint64_t begin = 0;
        std::uint64_t end = 0;
    };

    /// Neither is null.
    COutsideWords(std::shared_ptr<CWordBytes> before, std::shared_ptr<CWordBytes> after, Stretch stretch, bool isPaged);

    bool IsFinished() const { return m_hasFailed || m_next >= m_end; }
    bool IsBeforeStretch() const { return !IsFinished() && m_next < m_stretch.begin; }

    /// A file cannot be read: what was found until then is all that is known.
    bool HasFailed() const { return m_hasFailed; }

    /// Compares another piece. Throws std::bad_alloc.
    void CompareNext();

    std::size_t Count() const { return m_places.size(); }
    std::size_t CountBefore() const { return m_countBefore; } ///< of them, those before the stretch
    std::uint64_t WordCount() const { return m_words; }

    /// Read from the files again.
    ChangeRecord At(std::size_t index) const;

private:
    struct Place {
        std::uint64_t word;
        std::uint64_t count;
        bool isZeros;
    };

    void SkipStretch();
    std::uint64_t EndOfPiece() const;
    void CompareWord(std::uint64_t word, const std::byte* before, const std::byte* after);
    void Add(std::uint64_t word, bool isZero);
    std::size_t BytesOfWord(std::uint64_t word, std::uint64_t count) const;
    WordRun WordsAt(CWordBytes& words, const Place& place) const;

    std::shared_ptr<CWordBytes> m_before;
    std::shared_ptr<CWordBytes> m_after;
    Stretch m_stretch;
    bool m_isPaged;
    std::uint64_t m_end; ///< in bytes, of the longer file
    std::uint64_t m_next = 0;
    bool m_hasFailed = false;
    std::vector<Place> m_places;
    std::size_t m_countBefore = 0;
    std::uint64_t m_words = 0;
    std::vector<std::byte> m_piecesBefore;
    std::vector<std::byte> m_piecesAfter;
};
