#pragma once

#include "changes/ChangeRecord.h"
#include "changes/ChangeTaker.h"
#include "changes/FileTables.h"
#include "files/FileType.h"
#include "files/Progress.h"

#include <filesystem>
#include <span>
#include <string>
#include <vector>

/// A recipe file that is compared.
struct ComparedFile {
    std::filesystem::path path;
    FileType type = FileType::Rcp;
};

/// In what two recipe files differ, as changes from the first to the second, in the order of the zones of the longer
/// one (ZonesOf). Keeps some pieces of both at a time, and no more however many rows there are. Never writes. Its calls
/// throw std::bad_alloc.
///
/// Two files of one type are compared by their words, or fields and lines. Files of two types are compared by what
/// their cells show, table by table, and outside the tables by their words where both have such.
class CFileDifferences {
public:
    /// A table of texts has the first of `tables`, if there is one.
    CFileDifferences(ComparedFile before, ComparedFile after, std::vector<FileTable> tables);

    bool AreOfOneType() const { return m_before.type == m_after.type; }
    std::span<const FileTable> Tables() const { return m_tables; }

    /// The header of the changes; sizes that cannot be read are left out.
    ChangeHeader Header() const;

    /// Hands all changes to `taker` until it wants no more, or `progress`. False, when a file cannot be read or is
    /// damaged.
    bool HandTo(CChangeTaker& taker, CProgress& progress);

    /// Which file could not be read; null when both could.
    const ComparedFile* Unreadable() const { return m_unreadable; }

    /// For two tables of texts: why the first does not become the second, byte for byte, by the changes (CsvPatch.h),
    /// or the second the first by going back, as a part of a sentence; empty when both do. Empty, too, after a failure,
    /// as Unreadable tells.
    std::u16string WhyNoPatch(CProgress& progress);

private:
    std::u16string WhyNoPatch(const ComparedFile& from, const ComparedFile& to, CProgress& progress);
    bool HandWords(CChangeTaker& taker, CProgress& progress);
    bool HandFields(CChangeTaker& taker, CProgress& progress);
    bool HandTexts(CChangeTaker& taker, CProgress& progress);
    bool Fail(bool isFirst);

    ComparedFile m_before;
    ComparedFile m_after;
    std::vector<FileTable> m_tables;
    const ComparedFile* m_unreadable = nullptr;
    bool m_hasEnough = false; ///< the taker or the progress ended it
};
