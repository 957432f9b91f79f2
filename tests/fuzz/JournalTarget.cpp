#include "recovery/Journal.h"
#include "recovery/JournalLines.h"
#include "recovery/JournalPlace.h"
#include "recovery/JournalReader.h"
#include "recovery/UnsavedChanges.h"
#include "tests/fuzz/Property.h"
#include "tests/fuzz/Scratch.h"
#include "tests/fuzz/Targets.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kMostMadeAgain = 1000; ///< cells: more take long and show nothing new

/// The lines of `bytes` with the checksums that they would have, which nobody finds by chance.
std::string WithChecksums(std::string_view bytes)
{
    std::string lines;
    std::uint32_t checksum = 0;
    while (!bytes.empty()) {
        const std::string_view json = bytes.substr(0, bytes.find('\n'));
        checksum = ChecksumOf(json, checksum);
        std::string line(kLinePrefix, ' ');
        PutChecksum(checksum, line);
        lines += line.append(json) + '\n';
        bytes.remove_prefix(std::min(json.size() + 1, bytes.size()));
    }
    return lines;
}

void RequireWithinRows(const UnsavedWork& work)
{
    const auto columns = LayOutColumns(work.header.format);
    const UnsavedCell* before = nullptr;
    for (const UnsavedCell& cell : work.cells) {
        Require(!cell.state.IsUntouched(), "a cell of the work is edited");
        Require(before == nullptr || before->place < cell.place, "cells stand in the order of their places");
        Require(cell.place.row >= 0 && cell.place.row < work.header.rowCount && cell.place.column < columns.size(),
                "a cell lies within the rows");
        const auto words = static_cast<std::size_t>(columns[cell.place.column].dataLength);
        Require(!cell.state.IsExact() || cell.state.Words().size() == words, "exact words fill their cell");
        Require(cell.oldWords.size() <= 2 * words, "old words lie within their cell");
        before = &cell;
    }
}

void RequireSameAgain(const UnsavedWork& work)
{
    std::error_code fault;
    auto journal = CJournal::Begin(ScratchFolder(), work.header, fault);
    Require(journal && journal->Append(work.cells), "work that was read is written");
    const auto made = JournalsIn(UnsavedFolder(ScratchFolder()));
    Require(made.size() == 1, "as one journal");
    const JournalContent again = ReadJournal(CFile(made[0].path, CFile::Mode::Read));
    journal->End();
    Require(again.kind == JournalContent::Kind::Readable && !again.isCut, "and is read again");
    Require(again.work.cells == work.cells, "as it was");
    std::string one;
    std::string other;
    AppendHeaderJson(work.header, one);
    AppendHeaderJson(again.work.header, other);
    Require(one == other, "with its header");
}

void RequireRecords(const UnsavedWork& work)
{
    const CUnsavedChanges changes(work);
    Require(changes.Count() <= work.cells.size(), "a record is one of an edited cell");
    for (std::size_t i = 0; i < changes.Count(); ++i)
        Require(changes.At(i).newText.has_value(), "an edit has a text");
}

void Check(std::string_view bytes)
{
    const fs::path path = ScratchFolder() / "journal";
    PutFile(path, std::as_bytes(std::span(bytes)));
    const JournalContent content = ReadJournal(CFile(path, CFile::Mode::Read));
    Require(AreSame(FileContent(path), std::as_bytes(std::span(bytes))), "reading changes nothing");
    if (content.kind != JournalContent::Kind::Readable)
        return;
    RequireWithinRows(content.work);
    if (content.work.cells.size() > kMostMadeAgain)
        return;
    RequireSameAgain(content.work);
    RequireRecords(content.work);
}

} // namespace

void FuzzJournal(FuzzBytes bytes)
{
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    Check(text);
    Check(WithChecksums(text));
}
