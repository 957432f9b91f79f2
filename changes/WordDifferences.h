#pragma once

#include "changes/ChangeList.h"
#include "files/FileType.h"
#include "files/WordBytes.h"
#include "files/WordRuns.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <vector>

/// In what words two differ, as changes from `before` to `after`, which must outlive the list and stay as they are.
class CWordDifferences final : public CChangeList {
public:
    /// Both are of the file at `path`. Compares all of their words. Throws std::bad_alloc, as the next one does.
    CWordDifferences(CWordBytes& before, CWordBytes& after, FileType type, std::filesystem::path path);

    /// Compares only these blocks of `after`: outside of them it is like `before`, and zero where only one of them has
    /// words.
    CWordDifferences(CWordBytes& before, CWordBytes& after, FileType type, std::filesystem::path path,
                     std::span<const std::uint64_t> blocks);

    /// Whether all of it could be read; else the list is of no use.
    bool IsRead() const { return m_isRead; }

    std::uint64_t WordCount() const;

    /// The words of `after` that `before` has not, or has otherwise, for WriteWordRuns; nothing after a failure.
    std::optional<CWordRuns> Runs() const;

    std::size_t Count() const override { return m_places.size(); }
    ChangeRecord At(std::size_t index) const override;
    ChangeHeader Header() const override;
    bool IsComplete() const override { return true; }
    std::optional<CellPlace> PlaceOf(std::size_t) const override { return std::nullopt; }

private:
    /// Words that differ, or zeros that only one side has.
    struct Place {
        std::uint64_t word;
        std::uint64_t count;
        bool isZeros;
    };

    CWordDifferences(CWordBytes& before, CWordBytes& after, FileType type, std::filesystem::path path, bool);
    void Compare(std::uint64_t begin, std::uint64_t end);
    bool HasCutWord(std::uint64_t begin, std::uint64_t end) const;
    void Add(std::uint64_t word);
    void AddZeros();

    CWordBytes& m_before;
    CWordBytes& m_after;
    FileType m_type;
    std::filesystem::path m_path;
    std::vector<Place> m_places;
    bool m_isRead = true;
};
