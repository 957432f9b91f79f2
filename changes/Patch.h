#pragma once

#include "changes/ChangeRecord.h"
#include "changes/ChangeSyntax.h"
#include "changes/ChangeTaker.h"
#include "changes/FileTables.h"
#include "changes/WordDifferences.h"
#include "files/FileType.h"
#include "files/Outcome.h"
#include "files/WriteTarget.h"
#include "text/Reporter.h"

#include <cstdint>
#include <filesystem>
#include <istream>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <variant>
#include <vector>

/// Changes that are to be made in a file.
struct Patch {
    struct Entry {
        ChangeRecord record;
        std::uint64_t line = 0; ///< of the patch, counted from 1
    };

    ChangeHeader header;
    std::vector<Entry> entries;
};

/// All changes of `input`, or the first fault in it. Throws std::bad_alloc.
std::variant<Patch, ChangeFault> ReadPatch(std::istream& input);

/// Old becomes new.
void Reverse(ChangeHeader& header);
void Reverse(ChangeRecord& record);
void Reverse(Patch& patch);

/// A file that a patch is for.
struct PatchedFile {
    std::filesystem::path path;
    FileType type = FileType::Rcp;
    std::vector<FileTable> tables;
};

/// Why a patch does not fit.
struct PatchRefusal {
    /// A value that is another than the patch says.
    struct Other {
        ChangeRecord expected;              ///< where it stands, and the old side
        std::optional<std::u16string> text; ///< what is there
        WordRun words;
    };

    std::u16string reason; ///< a part of a sentence; empty where `others` say it all, or the file cannot be read
    std::vector<Other> others;
};

/// A patch on its way into a file. Its calls throw std::bad_alloc.
class CFilePatch {
public:
    virtual ~CFilePatch() = default;

    /// Looks at every old value. Nothing when all of them are there and what is new can stand in its place; to be
    /// called first, and the others only then.
    virtual std::optional<PatchRefusal> Look() = 0;

    /// Whether the file would not become another.
    virtual bool ChangesNothing() = 0;

    /// The file's header, and each change once with all that can be told of it, in the order of their places.
    virtual ChangeHeader Header() = 0;
    virtual void HandTo(CChangeTaker& taker) = 0;

    /// The words that change, all of them; null for a table of texts, and when they cannot be read.
    virtual const CWordDifferences* Words() = 0;

    /// Makes the changes, of which there is one at least: all, or none where the system lets that be (WriteWordRuns,
    /// SaveCsvPatch). Not saved after a failure, reported once.
    virtual SaveResult Write(const WriteTarget& target, CReporter& reporter) = 0;
};

/// The patch of a file that is there; both outlive it.
std::unique_ptr<CFilePatch> MakeFilePatch(const Patch& patch, const PatchedFile& file);

std::unique_ptr<CFilePatch> MakeWordPatch(const Patch& patch, const PatchedFile& file);
std::unique_ptr<CFilePatch> MakeTablePatch(const Patch& patch, const PatchedFile& file);
