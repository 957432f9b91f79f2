#include "changes/TablePieces.h"

#include "disk/File.h"
#include "files/WordBytes.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <optional>

namespace fs = std::filesystem;

namespace {

using Answer = CPieceTaker::Answer;

/// How far the tables before this one have come.
struct RowsDone {
    std::uint64_t before = 0;
    std::uint64_t total = 0;
};

Outcome WalkTable(std::size_t index, const FileTable& table, CRowPieces& pieces, CPieceTaker& taker,
                  const RowsDone& done, CProgress& progress)
{
    while (pieces.Next()) {
        const Answer answer = taker.Take(index, table, pieces);
        if (answer == Answer::NextTable)
            return Outcome::Done;
        const auto rows = static_cast<std::uint64_t>(std::int64_t{pieces.First()} + pieces.Rows().RowCount());
        if (answer == Answer::End || !progress.Advance(done.before + rows, done.total))
            return Outcome::GivenUp;
    }
    return pieces.HasFailed() ? Outcome::Failed : Outcome::Done;
}

/// `piecesOf` gives the pieces of a table, or null when they cannot be read.
template <class PiecesOf>
Outcome WalkAll(std::span<const FileTable> tables, CPieceTaker& taker, CProgress& progress, PiecesOf piecesOf)
{
    RowsDone done;
    for (const FileTable& table : tables)
        done.total += static_cast<std::uint64_t>(table.layout.RowCount());
    for (std::size_t i = 0; i < tables.size(); ++i) {
        const CRecipeRows& layout = tables[i].layout;
        if (layout.RowCount() == 0)
            continue;
        const std::unique_ptr<CRowPieces> pieces = piecesOf(layout);
        const Outcome outcome = pieces ? WalkTable(i, tables[i], *pieces, taker, done, progress) : Outcome::Failed;
        if (outcome != Outcome::Done)
            return outcome;
        done.before += static_cast<std::uint64_t>(layout.RowCount());
    }
    return Outcome::Done;
}

Outcome WalkTexts(const fs::path& path, std::span<const FileTable> tables, CPieceTaker& taker, CProgress& progress)
{
    if (!CFile(path, CFile::Mode::Read).IsOpen())
        return Outcome::Failed;
    return WalkAll(tables, taker, progress, [&path](const CRecipeRows& layout) { return PiecesOfTexts(layout, path); });
}

Outcome WalkWords(FileType type, const fs::path& path, std::span<const FileTable> tables, CPieceTaker& taker,
                  CProgress& progress)
{
    CFileWords words(type, path);
    if (!words.IsOpen() || !words.IsUndamaged())
        return Outcome::Failed;
    return WalkAll(tables, taker, progress, [&](const CRecipeRows& layout) {
        const bool isSound = words.IsSound(layout.FirstByte().number, layout.StretchBytes());
        return isSound ? PiecesOfWords(type, layout, words) : nullptr;
    });
}

} // namespace

Outcome WalkTables(FileType type, const fs::path& path, std::span<const FileTable> tables, CPieceTaker& taker,
                   CProgress& progress)
{
    return WithinMemory([&] {
        return type == FileType::Csv ? WalkTexts(path, tables, taker, progress)
                                     : WalkWords(type, path, tables, taker, progress);
    });
}

std::int32_t RowsInFile(const CRowPieces& rows)
{
    const std::int32_t count = rows.Rows().RowCount();
    if (const CFieldTable* const fields = rows.Rows().Fields())
        return static_cast<std::int32_t>(std::min<std::size_t>(fields->LineCount(), static_cast<std::size_t>(count)));
    const std::uint64_t rowBytes = rows.Rows().BytesBefore({1, 0});
    const std::uint64_t bytes = rows.Stored().FileBytes();
    return static_cast<std::int32_t>(
        std::min<std::uint64_t>((bytes + rowBytes - 1) / rowBytes, static_cast<std::uint64_t>(count)));
}

bool IsWholeRow(const CRowPieces& rows, std::int32_t row)
{
    return rows.Rows().Fields() != nullptr || rows.Rows().BytesBefore({row + 1, 0}) <= rows.Stored().FileBytes();
}
