#pragma once

#include "changes/ChangeList.h"
#include "files/FileType.h"
#include "files/WordBytes.h"

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

/// Changes that are about to be made in a file of words, each looked at when it is made: whether one can go back by it
/// later. The changes must outlive it.
class CCheckedChanges final : public CChangeList {
public:
    CCheckedChanges(const CChangeList& changes, FileType type, const std::filesystem::path& file);

    /// Why one cannot go back by those made so far: they are not complete, have no words, or do not begin with what the
    /// file holds. Empty when one can.
    const std::u16string& Fault() const { return m_fault; }

    std::size_t Count() const override { return m_changes.Count(); }
    ChangeRecord At(std::size_t index) const override;
    ChangeHeader Header() const override { return m_changes.Header(); }
    bool IsComplete() const override { return m_changes.IsComplete(); }
    std::optional<CellPlace> PlaceOf(std::size_t index) const override { return m_changes.PlaceOf(index); }

private:
    std::u16string FaultOf(const ChangeHeader& header, FileType type) const;
    std::u16string FaultOf(const ChangeRecord& record) const;
    bool EndsWithFile(const ChangeRecord& record) const;

    const CChangeList& m_changes;
    bool m_isPaged;
    mutable CFileWords m_words;
    mutable std::vector<std::byte> m_held;
    mutable std::u16string m_fault;
};
