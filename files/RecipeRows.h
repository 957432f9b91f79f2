#pragma once

#include "files/ByteBuffer.h"
#include "files/CellState.h"
#include "files/FieldTable.h"
#include "model/Address.h"
#include "model/ColumnCoding.h"
#include "model/WordCodec.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// The rows that a data pane shows: geometry, column codings and cell texts. Readers fill them, writers take them.
///
/// They cost the words (or the text) they were read from, and a state only for each cell that was given one since: an
/// untouched cell's text is made when it is asked for. Copies share what was read. Rows and columns are data rows and
/// data columns, counted from 0: a grid adds its title row and its two fixed columns.
///
/// A cell is edited while its state differs from that at the last save or, before one, from untouched.
class CRecipeRows {
public:
    /// Takes a new geometry; every cell is empty afterwards. The caller has seen to it that it can be shown
    /// (ShowLimits.h); a negative `rowCount` counts as 0.
    void LayOut(std::vector<ColumnCoding> columns, std::int32_t startAddress, std::int32_t rowCount);

    /// No rows and no columns.
    void Clear();

    /// Gives the columns the notes that `columns`, as many and else like them, have.
    void TakeNotesOf(std::span<const ColumnCoding> columns);

    const std::vector<ColumnCoding>& Columns() const { return m_columns; }
    std::int32_t RowCount() const { return m_rowCount; }
    std::int32_t StartAddress() const { return m_startAddress; } ///< word address of row 0, as it was set
    std::int32_t WordsPerRow() const { return m_wordsPerRow; }
    std::uint64_t StretchBytes() const;                      ///< the bytes that all rows take
    std::uint64_t BytesWithin(std::uint64_t fileSize) const; ///< of them, those that a flat file of that size holds
    WordAddress RowAddress(std::int32_t row) const;          ///< of the row's first word
    ByteOffset FirstByte() const;                            ///< of row 0
    std::int32_t WordOffset(std::size_t column) const { return m_wordOffsets[column]; } ///< within a row

    /// Whether both have the same columns, the same number of rows and the same start address.
    bool IsLaidOutLike(const CRecipeRows& other) const;

    /// Every cell becomes empty.
    void ShowNothing();

    /// Every cell becomes that of a new document: empty for a string, "0" for anything else.
    void ShowNewDocument();

    /// The cells are those of `image`: the bytes from row 0's first word on, as many as there were.
    void ShowWords(CByteBuffer image, RecipeKind kind);

    /// The cells are what `other`, rows of the same layout, was read from, none of them touched; both share it. Words
    /// are those of a file of `kind`.
    void ShowSourceOf(const CRecipeRows& other, RecipeKind kind);

    /// Every cell is that of the beginning of `words`.
    void ShowEverywhere(CByteBuffer words, RecipeKind kind);

    /// Whether ShowEverywhere was the last to say what the cells are.
    bool ShowsTheSameEverywhere() const { return m_source == Source::SameWords; }

    /// Whether no cell has a state since they were filled.
    bool IsUntouched() const { return m_touchedCells.empty(); }

    /// Whether the cells were read from words, or are new: exact words may be given to them.
    bool IsOfWords() const { return m_source == Source::Words || m_source == Source::NewDocument; }

    /// The cells are the fields of `fields`, "0" where it has none.
    void ShowFields(CFieldTable fields);

    bool HasCell(CellPlace place) const { return Holds(place.row, place.column); }

    /// The text of a cell; empty outside the rows.
    std::u16string Text(std::int32_t row, std::size_t column) const;

    /// As Text, but appends to `text`: no allocation a cell. For all cells in their order, CellTexts.h is faster.
    void AppendText(std::int32_t row, std::size_t column, std::u16string& text) const;

    /// Gives the cell a text; false, and nothing changed, outside the rows.
    bool SetText(std::int32_t row, std::size_t column, std::u16string_view text);

    /// What the cell's words are made of; untouched outside the rows.
    const CCellState& State(CellPlace place) const;

    /// Gives each cell of `edits` the state that stands there, and takes its former one in exchange: the same call once
    /// more takes all of it back. The places lie within the rows, in ascending order, none twice. Exact words are only
    /// for rows that were read from words or are new. Throws std::bad_alloc, and then nothing was changed.
    void Exchange(std::span<CellEdit> edits);

    /// Whether the cell's state differs from that at the last save or reading.
    bool IsEdited(std::int32_t row, std::size_t column) const;

    /// How many cells are edited.
    std::size_t EditedCount() const { return m_editedCount; }

    /// All of them, in ascending order.
    std::vector<CellPlace> EditedPlaces() const;

    /// Calls `take` with the place and the state of each of them, in ascending order.
    template <class Take>
    void ForEachEdited(Take take) const
    {
        for (const auto& [key, cell] : m_touchedCells)
            if (IsEdited(cell))
                take(PlaceOf(key), cell.state);
    }

    /// Calls `take` with the place of each of `cells`, in ascending order, and its state: null unless it is edited.
    template <class Take>
    void ForEachOf(std::span<const CellEdit> cells, Take take) const
    {
        auto next = m_touchedCells.begin();
        for (const CellEdit& cell : cells) {
            const std::uint64_t key = CellKey(cell.place.row, cell.place.column);
            if (next != m_touchedCells.end() && next->first < key)
                next = m_touchedCells.lower_bound(key);
            const bool isTouched = next != m_touchedCells.end() && next->first == key;
            take(cell.place, isTouched && IsEdited(next->second) ? &next->second.state : nullptr);
            if (isTouched)
                ++next; // they mostly follow each other
        }
    }

    /// The edited cell that comes next after `place`, or before it; nothing when there is none. A `place` above the
    /// rows comes before all of them.
    std::optional<CellPlace> NextEdited(CellPlace place) const;
    std::optional<CellPlace> PreviousEdited(CellPlace place) const;

    /// How many bytes of the stretch lie before the cell; the first cell of the row after the last may be asked for,
    /// too.
    std::uint64_t BytesBefore(CellPlace place) const;

    /// Fills `words`, which is as long as the cell is, with the words that the cell was read from or given, low bytes
    /// first; with zeros where there are none.
    void LoadWords(CellPlace place, std::span<std::byte> words) const;

    /// The words that `count` rows were read from, where all of them are there and none of the rows' cells was given a
    /// state.
    std::optional<std::span<const std::byte>> UntouchedRows(std::int32_t first, std::int32_t count) const;

    /// Whether the cell was read from a field that was there, or was given a text.
    bool HasField(CellPlace place) const;

    /// The cell's value when it lies outside its column's limits (ValueLimits.h), that of the words it was read from
    /// while it is untouched; nothing otherwise, and for a cell that was never filled.
    std::optional<std::u16string> OutsideLimits(std::int32_t row, std::size_t column) const;

    /// The rows are in their file: no cell is edited any more. Cheap for any number of cells.
    void MarkSaved();

    /// Takes over how `other`, rows of the same layout, was saved: a cell is edited from now on where it is not shown
    /// as it was saved there. Rows of another layout are left as they are. Throws std::bad_alloc, and then some cells
    /// may count as saved that are not.
    void TakeSavedFrom(const CRecipeRows& other);

    /// Where these rows were read from the same bytes as `other`, they share those of `other` from now on.
    void ShareSourceOf(const CRecipeRows& other);

    /// The fields that they were read from; null for rows of words. Lives as long as they, and as their copies.
    const CFieldTable* Fields() const { return m_fields.get(); }

    /// What they were read from, which copies share: an address that tells it from others, null for nothing, and the
    /// memory that it takes, in bytes.
    const void* SourceId() const;
    std::size_t SourceBytes() const;

    /// Roughly the memory that the rest takes besides its own size, in bytes: the layout, and the states of cells.
    std::size_t FurtherBytes() const;

private:
    /// A cell that was given a state since the rows were filled.
    struct TouchedCell {
        CCellState state;
        std::uint32_t editedAfter = 0; ///< the value of m_saves while it is edited
    };
    using TouchedCells = std::map<std::uint64_t, TouchedCell>; ///< by CellKey, which is the order of the cells

    enum class Source { Nothing, NewDocument, Words, SameWords, Fields };

    friend class CCellTexts;

    void Show(Source source);
    TouchedCells::iterator MakeRoomFor(std::span<const CellEdit> edits);
    void ForgetRoomFor(std::span<const CellEdit> edits);
    TouchedCells::iterator Exchange(TouchedCells::iterator cell, CCellState& other);
    TouchedCells::iterator Seek(TouchedCells::iterator from, std::uint64_t cellKey);
    TouchedCells::const_iterator Find(std::int32_t row, std::size_t column) const;
    bool IsEdited(const TouchedCell& cell) const { return cell.editedAfter == m_saves; }
    bool Holds(std::int32_t row, std::size_t column) const;
    CCellState SavedState(std::uint64_t cellKey) const;
    bool IsReadLike(CellPlace place, const CRecipeRows& other) const;
    std::vector<std::uint64_t> CellsThatMayDifferFrom(const CRecipeRows& other) const;
    void CompareWithSaved(std::uint64_t cellKey, const CRecipeRows& other);
    CellPlace PlaceOf(std::uint64_t cellKey) const;
    std::uint64_t CellKey(std::int32_t row, std::size_t column) const
    {
        return static_cast<std::uint64_t>(row) * m_columns.size() + column;
    }
    std::size_t PositionInImage(std::int32_t row, std::size_t column) const
    {
        if (m_source == Source::SameWords)
            return 0;
        return 2 * (static_cast<std::size_t>(m_wordsPerRow) * static_cast<std::size_t>(row) +
                    static_cast<std::size_t>(m_wordOffsets[column]));
    }
    std::span<const std::byte> Image() const { return m_image ? m_image->Bytes() : std::span<const std::byte>(); }
    void AppendState(const CCellState& state, std::int32_t row, std::size_t column, std::u16string& text) const;
    void AppendUntouched(std::int32_t row, std::size_t column, std::u16string& text) const;

    std::vector<ColumnCoding> m_columns;
    std::vector<std::int32_t> m_wordOffsets;
    std::int32_t m_startAddress = 0;
    std::int32_t m_rowCount = 0;
    std::int32_t m_wordsPerRow = 0;
    Source m_source = Source::Nothing;
    RecipeKind m_kind = RecipeKind::Flat;
    std::shared_ptr<const CByteBuffer> m_image;  ///< null for none
    std::shared_ptr<const CFieldTable> m_fields; ///< likewise
    std::uint32_t m_saves = 1;
    std::size_t m_editedCount = 0;
    TouchedCells m_touchedCells;
    std::map<std::uint64_t, CCellState> m_savedStates; ///< of edited cells that were not untouched when they were saved
};
