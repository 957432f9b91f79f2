#include "changes/CellDifferences.h"
#include "changes/Patch.h"
#include "changes/PatchPieces.h"
#include "files/RowWindow.h"
#include "files/SameBytes.h"
#include "files/SavePlan.h"
#include "files/StretchCoding.h"
#include "files/WordBytes.h"
#include "files/WordRuns.h"
#include "model/CellCheck.h"
#include "text/FileMessages.h"
#include "text/MessageText.h"
#include "text/PathText.h"

#include <algorithm>
#include <map>
#include <utility>

namespace {

constexpr std::uint64_t kPagedEnd = std::uint64_t{1} << 32;          // of logical addresses
constexpr std::uint64_t kMostUntoldBytes = std::uint64_t{128} << 20; // a slip of the hand is not to fill a disk
constexpr std::uint64_t kFlatEnd = std::uint64_t{1} << 40;           // more than any file of words has
constexpr std::size_t kPieceBytes = std::size_t{64} << 10;

std::u16string TextOf(ChangeFault fault, std::uint64_t line)
{
    fault.line = line;
    return FaultText(fault);
}

class CWordPatch final : public CFilePatch {
public:
    CWordPatch(const Patch& patch, const PatchedFile& file)
        : m_patch(patch),
          m_file(file),
          m_words(file.type, file.path),
          m_before(m_words),
          m_after(m_words)
    {
        for (const FileTable& table : m_file.tables)
            m_windows.emplace_back(std::make_unique<CRowWindow>(file.type, table.layout, m_words));
    }

    std::optional<PatchRefusal> Look() override
    {
        m_others.clear();
        if (!m_words.IsOpen())
            return PatchRefusal();
        if (m_patch.header.type && *m_patch.header.type != m_file.type)
            return PatchRefusal{u"it is made for a file of another type", {}};
        std::u16string reason = MakePieces();
        if (reason.empty() && !m_isUnreadable)
            reason = Settle();
        if (reason.empty() && !m_isUnreadable)
            LookAtPieces();
        if (m_isUnreadable)
            return PatchRefusal();
        if (!reason.empty() || !m_others.empty())
            return PatchRefusal{std::move(reason), std::move(m_others)};
        return Change() ? std::nullopt : std::optional(PatchRefusal());
    }

    bool ChangesNothing() override { return m_differences && m_differences->IsRead() && m_differences->Count() == 0; }

    ChangeHeader Header() override
    {
        ChangeHeader header;
        header.file = PathText(m_file.path.filename());
        header.type = m_file.type;
        header.bytes = static_cast<std::int64_t>(m_words.Count());
        header.newBytes = static_cast<std::int64_t>(m_after.Count());
        header.tables = NamesOf(m_file.tables);
        return header;
    }

    void HandTo(CChangeTaker& taker) override
    {
        for (const PatchPiece& piece : m_pieces)
            if (!taker.Take(Completed(piece)))
                return;
    }

    const CWordDifferences* Words() override
    {
        return m_differences && m_differences->IsRead() ? &*m_differences : nullptr;
    }

    SaveResult Write(const WriteTarget& target, CReporter& reporter) override
    {
        const auto runs = m_differences->Runs();
        if (!runs) {
            ShowFileError(reporter, kOpenFileError, m_file.path);
            return {};
        }
        const auto length = IsPaged(m_file.type) ? std::nullopt : std::optional(m_after.Count());
        const SaveResult saved = WriteWordRuns(m_file.type, *runs, target, length, reporter);
        if (saved.isLeftOut)
            ShowFileError(reporter, kSaveFileError, m_file.path);
        return saved;
    }

private:
    const Patch::Entry& EntryOf(const PatchPiece& piece) const { return m_patch.entries[piece.entry]; }

    std::u16string Reason(const PieceFault& fault) const
    {
        return TextOf({0, fault.key, fault.text}, m_patch.entries[fault.entry].line);
    }

    /// Why the records cannot be pieces; empty when they are.
    std::u16string MakePieces()
    {
        RecordFile file{m_file.type, m_file.tables, {m_words.Count()}};
        for (const auto& size : {m_patch.header.bytes, m_patch.header.newBytes})
            if (size)
                file.ends.push_back(static_cast<std::uint64_t>(*size));
        for (std::size_t i = 0; i < m_patch.entries.size(); ++i) {
            const auto fault = MakePiece(i, file);
            if (m_isUnreadable)
                return {};
            if (fault)
                return TextOf(*fault, m_patch.entries[i].line);
        }
        return {};
    }

    std::optional<ChangeFault> MakePiece(std::size_t entry, const RecordFile& file)
    {
        const ChangeRecord& record = m_patch.entries[entry].record;
        if (record.why == ChangeReason::Form && !record.address && !record.row)
            return ChangeFault{0, u"why", u"the form of a file is nothing that a patch can change"};
        const auto place = PlaceOf(record, file);
        if (const auto* fault = std::get_if<ChangeFault>(&place))
            return *fault;
        PatchPiece piece;
        piece.entry = entry;
        if (const auto* cell = std::get_if<TableCell>(&place))
            piece.cell = *cell;
        const WordAddress address = piece.cell ? AddressOf(*piece.cell) : record.address.value_or(WordAddress(0));
        piece.begin = FirstByteOf(address).number;
        if (record.zeros != 0) {
            if (!record.oldWords.empty() || !record.newWords.empty() || record.oldText || record.newText ||
                !record.address)
                return ChangeFault{0, u"zeros", u"zeros have an address, and neither words nor texts"};
            if (!IsWithin(record.address->number, record.zeros))
                return ChangeFault{0, u"zeros", u"no file of that type has so many words"};
            piece.zeros = record.zeros;
            m_pieces.push_back(std::move(piece));
            return std::nullopt;
        }
        return MakeValue(record, std::move(piece));
    }

    WordAddress AddressOf(const TableCell& cell) const
    {
        return AddressOfCell(m_file.tables[cell.table].layout, cell.place);
    }

    bool IsWithin(std::int64_t address, std::int64_t words) const
    {
        const auto end = static_cast<std::int64_t>((IsPaged(m_file.type) ? kPagedEnd : kFlatEnd) / 2);
        const std::int64_t count = words < 0 ? -(words + 1) : words;
        return address >= 0 && address <= end && count < end && address + count + (words < 0 ? 1 : 0) <= end;
    }

    std::optional<ChangeFault> MakeValue(const ChangeRecord& record, PatchPiece piece)
    {
        const bool hasWords = !record.oldWords.empty() || !record.newWords.empty();
        const bool oldByText = record.oldWords.empty() && record.oldText.has_value();
        const bool newByText = record.newWords.empty() && record.newText.has_value();
        if (!hasWords && !newByText)
            return ChangeFault{0, u"new", u"the text is missing"};
        if ((oldByText || newByText) && !piece.cell)
            return ChangeFault{0, oldByText ? u"oldWords" : u"newWords", u"the words are missing"};
        piece.from = record.oldWords;
        piece.to = record.newWords;
        if (oldByText || !hasWords) {
            piece.looksAtFrom = false; // it is the text that is looked at
            if (!TakeOldText(record, piece))
                return std::nullopt;
        }
        if (newByText && !TakeNewText(*record.newText, piece))
            return ChangeFault{0, u"new", u"the cell does not take that text"};
        const auto words = static_cast<std::int64_t>((piece.End() - piece.begin + 1) / 2);
        if (!IsWithin(static_cast<std::int64_t>(piece.begin / 2), words))
            return ChangeFault{0, u"address", u"no file of that type has such words"};
        m_pieces.push_back(std::move(piece));
        return std::nullopt;
    }

    CRowWindow* WindowAt(const TableCell& cell)
    {
        CRowWindow& window = *m_windows[cell.table];
        if (m_shown != std::pair(cell.table, cell.place.row)) {
            m_shown.reset();
            if (!window.Show(cell.place.row, 1)) {
                m_isUnreadable = true;
                return nullptr;
            }
            m_shown.emplace(cell.table, cell.place.row);
        }
        return &window;
    }

    WordRun Held(const CRowWindow& window, const TableCell& cell) const
    {
        const CRecipeRows& layout = m_file.tables[cell.table].layout;
        const std::size_t length = BytesOfCell(layout, cell.place);
        const std::size_t begin =
            std::min<std::size_t>(layout.BytesBefore({0, cell.place.column}), window.Words().size());
        const auto words = window.Words().subspan(begin, std::min(length, window.Words().size() - begin));
        return {words.begin(), words.end()};
    }

    /// The words that the cell has; notes it when they do not show the old text. False when they cannot be read.
    bool TakeOldText(const ChangeRecord& record, PatchPiece& piece)
    {
        CRowWindow* const window = WindowAt(*piece.cell);
        if (window == nullptr)
            return false;
        piece.from = Held(*window, *piece.cell);
        std::u16string shown = window->Rows().Text(0, piece.cell->place.column);
        if (record.oldText && *record.oldText != shown)
            m_others.push_back({ExpectedOf(piece), std::move(shown), piece.from});
        return true;
    }

    bool TakeNewText(const std::u16string& text, PatchPiece& piece)
    {
        const CRecipeRows& layout = m_file.tables[piece.cell->table].layout;
        const std::uint32_t column = piece.cell->place.column;
        if (!ValidateCellValue(layout.Columns()[column], text))
            return false;
        CRecipeRows row;
        row.LayOut(layout.Columns(), 0, 1);
        row.ShowNewDocument();
        row.SetText(0, column, text);
        piece.to.resize(BytesOfCell(layout, piece.cell->place));
        CStretchCoder(row, IsPaged(m_file.type) ? RecipeKind::Paged : RecipeKind::Flat).CodeCell({0, column}, piece.to);
        return true;
    }

    /// Puts the pieces in order, and finds the size that the file is to have; empty, or what is in the way.
    std::u16string Settle()
    {
        if (const auto fault = SortPieces(m_pieces))
            return Reason(*fault);
        m_next = m_words.Count();
        if (m_pieces.empty())
            return {};
        if (IsPaged(m_file.type)) {
            for (const PatchPiece& piece : m_pieces)
                if (piece.zeros == 0)
                    m_next = std::max(m_next, FileBytesAfter(m_file.type, m_words.Count(), piece.ToEnd()));
            return {};
        }
        PatchSizes sizes{m_words.Count(), std::nullopt};
        const auto& [bytes, newBytes] = std::pair(m_patch.header.bytes, m_patch.header.newBytes);
        if (bytes && newBytes && *bytes != *newBytes) {
            if (static_cast<std::uint64_t>(*bytes) != sizes.now)
                return FillMessage(u"the file has %d bytes, and %d are expected",
                                   {static_cast<std::int64_t>(sizes.now), *bytes});
            if (static_cast<std::uint64_t>(*newBytes) > kFlatEnd)
                return u"no file has so many bytes as it is to have";
            sizes.next = static_cast<std::uint64_t>(*newBytes);
        }
        if (const auto fault = SettleSize(m_pieces, sizes))
            return Reason(*fault);
        if (!(bytes && newBytes) && *sizes.next > sizes.now + kMostUntoldBytes)
            return u"the file would become much longer, and the header does not say both sizes";
        m_next = *sizes.next;
        return {};
    }

    void LookAtPieces()
    {
        for (const PatchPiece& piece : m_pieces) {
            if (m_isUnreadable)
                return;
            if (piece.zeros != 0)
                LookAtZeros(piece);
            else if (piece.looksAtFrom)
                LookAtWords(piece);
        }
    }

    /// What the file has in the place of the piece, of a paged file with the zeros behind its end.
    std::optional<WordRun> Found(const PatchPiece& piece)
    {
        WordRun found(std::max(piece.from.size(), piece.to.size()));
        if (!IsPaged(m_file.type))
            found.resize(static_cast<std::size_t>(
                std::min<std::uint64_t>(m_words.Count() - std::min(m_words.Count(), piece.begin), found.size())));
        if (!found.empty() && !Read(piece.begin, found))
            return std::nullopt;
        return found;
    }

    /// Reads bytes from an even place on.
    bool Read(std::uint64_t begin, std::span<std::byte> bytes)
    {
        m_isUnreadable = m_isUnreadable || !m_words.IsSound(begin, bytes.size()) || !m_words.Read(begin, bytes);
        return !m_isUnreadable;
    }

    void LookAtWords(const PatchPiece& piece)
    {
        auto found = Found(piece);
        if (!found)
            return;
        WordRun expected = piece.from;
        if (IsPaged(m_file.type))
            expected.resize(found->size());
        const bool isHalf = piece.from.size() % 2 != 0 && piece.FromEnd() != m_words.Count();
        if (*found == expected && !isHalf)
            return;
        auto text = TextOfWords(piece, *found);
        m_others.push_back({ExpectedOf(piece), std::move(text), std::move(*found)});
    }

    void LookAtZeros(const PatchPiece& piece)
    {
        const bool isFlat = !IsPaged(m_file.type);
        const std::uint64_t end = piece.End();
        bool isAsExpected = true;
        if (isFlat && piece.zeros > 0)
            isAsExpected = piece.begin >= m_words.Count();
        else if (isFlat)
            isAsExpected = end <= m_words.Count();
        if (isAsExpected && IsZero(piece.begin, std::min(end, m_words.Count())))
            return;
        if (!m_isUnreadable)
            m_others.push_back({ExpectedOf(piece), std::nullopt, {}});
    }

    bool IsZero(std::uint64_t begin, std::uint64_t end)
    {
        std::vector<std::byte> piece(kPieceBytes);
        for (; begin < end; begin += kPieceBytes) {
            const auto part =
                std::span(piece).first(static_cast<std::size_t>(std::min<std::uint64_t>(kPieceBytes, end - begin)));
            if (!Read(begin, part) ||
                std::any_of(part.begin(), part.end(), [](std::byte b) { return b != std::byte{0}; }))
                return false;
        }
        return true;
    }

    /// Makes the changes in memory. False when the file cannot be read.
    bool Change()
    {
        for (const PatchPiece& piece : m_pieces) {
            WordRun words = piece.to;
            words.resize(std::max(piece.from.size(), words.size())); // what goes is zero in a paged file
            if (!words.empty() && !(m_words.IsSound(piece.begin, words.size()) && m_after.Write(piece.begin, words)))
                return false;
        }
        m_after.SetCount(m_next);
        if (IsPaged(m_file.type))
            m_before.SetCount(m_next); // what lies behind its end is zero as well
        m_differences.emplace(m_before, m_after, m_file.type, m_file.path, m_after.ChangedBlocks());
        return m_differences->IsRead();
    }

    /// Where a piece stands, and its old side.
    ChangeRecord ExpectedOf(const PatchPiece& piece)
    {
        ChangeRecord expected = PlaceOfPiece(piece);
        const ChangeRecord& record = EntryOf(piece).record;
        expected.oldText = record.oldText;
        expected.oldWords = record.oldWords;
        expected.zeros = record.zeros;
        return expected;
    }

    ChangeRecord PlaceOfPiece(const PatchPiece& piece) const
    {
        ChangeRecord record;
        if (piece.cell) {
            record = PlaceRecord(m_file.tables[piece.cell->table].layout, m_file.type, piece.cell->place);
            record.table = static_cast<std::int32_t>(piece.cell->table);
            return record;
        }
        const ChangeRecord& given = EntryOf(piece).record;
        record.address = given.address;
        record.table = given.table;
        record.row = given.row;
        record.column = given.column;
        record.item = given.item;
        return record;
    }

    /// How the cell shows these words; nothing where there is no cell, or fewer words.
    std::optional<std::u16string> TextOfWords(const PatchPiece& piece, const WordRun& words)
    {
        if (!piece.cell || words.size() != BytesOfCell(m_file.tables[piece.cell->table].layout, piece.cell->place))
            return std::nullopt;
        CRowWindow* const window = WindowAt(*piece.cell);
        if (window == nullptr)
            return std::nullopt;
        CRecipeRows row = window->Rows();
        const CellPlace place{0, piece.cell->place.column};
        CellEdit edit{place, CCellState::OfWords(WordsOf(words))};
        row.Exchange({&edit, 1});
        return row.Text(0, place.column);
    }

    ChangeRecord Completed(const PatchPiece& piece)
    {
        ChangeRecord record = PlaceOfPiece(piece);
        const ChangeRecord& given = EntryOf(piece).record;
        record.why = given.why;
        record.zeros = piece.zeros;
        if (piece.zeros != 0)
            return record;
        record.oldWords = piece.from;
        record.newWords = piece.to;
        record.oldText = TextOfWords(piece, piece.from);
        record.newText = TextOfWords(piece, piece.to);
        if (!piece.cell) {
            record.oldText = given.oldText;
            record.newText = given.newText;
            record.reads = given.reads;
        } else if (given.newText && record.newText && *given.newText != *record.newText) {
            record.reads = std::exchange(record.newText, given.newText);
        }
        return record;
    }

    const Patch& m_patch;
    const PatchedFile& m_file;
    CFileWords m_words;
    CChangedWords m_before; ///< the words as they are
    CChangedWords m_after;
    std::vector<std::unique_ptr<CRowWindow>> m_windows;          ///< of the tables
    std::optional<std::pair<std::size_t, std::int32_t>> m_shown; ///< the table and the row that its window shows
    std::vector<PatchPiece> m_pieces;
    std::uint64_t m_next = 0; ///< how many bytes the file is to have
    std::vector<PatchRefusal::Other> m_others;
    std::optional<CWordDifferences> m_differences;
    bool m_isUnreadable = false;
};

} // namespace

std::unique_ptr<CFilePatch> MakeWordPatch(const Patch& patch, const PatchedFile& file)
{
    return std::make_unique<CWordPatch>(patch, file);
}
