#include "files/RecipeWalk.h"

#include "disk/File.h"
#include "files/ByteBuffer.h"
#include "files/CsvFields.h"
#include "files/PagedReader.h"
#include "files/PagedRecipeFile.h"
#include "files/RecipeMessages.h"
#include "model/WordCodec.h"

#include <algorithm>
#include <optional>
#include <span>
#include <string>

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kPieceBytes = std::size_t{256} << 10; // of one read, unless a value is longer

/// The bytes of a stretch, from the first to the last, of which a piece is at hand.
class CStretch {
public:
    /// `reach` is the most that a value is made of.
    CStretch(std::uint64_t size, std::size_t reach) : m_size(size), m_reach(reach), m_piece(PieceSize()) {}
    virtual ~CStretch() = default;
    CStretch(const CStretch&) = delete;
    CStretch& operator=(const CStretch&) = delete;

    /// The bytes at `pos`, which is not before that of an earlier call: `reach` of them and perhaps more, fewer where
    /// the stretch ends. Nothing after a failure.
    std::optional<std::span<const std::byte>> From(std::uint64_t pos)
    {
        if (pos >= m_size)
            return std::span<const std::byte>();
        if (std::min(pos + m_reach, m_size) > m_begin + m_length && !MoveTo(pos))
            return std::nullopt;
        const std::span<const std::byte> piece = m_piece.Bytes();
        return piece.first(m_length).subspan(static_cast<std::size_t>(pos - m_begin));
    }

private:
    /// How many bytes arrived, fewer only where the file ends; nothing after a failure.
    virtual std::optional<std::size_t> Read(std::uint64_t pos, std::span<std::byte> bytes) = 0;

    std::size_t PieceSize() const
    {
        return static_cast<std::size_t>(std::min<std::uint64_t>(m_size, m_reach + kPieceBytes));
    }

    bool MoveTo(std::uint64_t pos)
    {
        const auto bytes = m_piece.Bytes();
        const auto length = static_cast<std::size_t>(std::min<std::uint64_t>(bytes.size(), m_size - pos));
        const auto arrived = Read(pos, bytes.first(length));
        m_begin = pos;
        m_length = arrived.value_or(0);
        if (m_length < length) // someone cut the file meanwhile
            m_size = pos + m_length;
        return arrived.has_value();
    }

    std::uint64_t m_size;
    const std::size_t m_reach;
    CByteBuffer m_piece;
    std::uint64_t m_begin = 0;
    std::size_t m_length = 0;
};

class CFlatStretch final : public CStretch {
public:
    CFlatStretch(const CFile& file, ByteOffset first, std::uint64_t size, std::size_t reach)
        : CStretch(size, reach),
          m_file(file),
          m_first(first)
    {
    }

private:
    std::optional<std::size_t> Read(std::uint64_t pos, std::span<std::byte> bytes) override
    {
        return m_file.ReadAt((m_first + pos).number, bytes);
    }

    const CFile& m_file;
    const ByteOffset m_first;
};

class CPagedStretch final : public CStretch {
public:
    CPagedStretch(CPagedReader& file, WordAddress firstWord, std::uint64_t size, std::size_t reach)
        : CStretch(size, reach),
          m_file(file),
          m_firstWord(firstWord)
    {
    }

private:
    std::optional<std::size_t> Read(std::uint64_t pos, std::span<std::byte> bytes) override
    {
        if (!m_file.Read(m_firstWord + static_cast<std::int64_t>(pos / 2), bytes))
            return std::nullopt;
        return bytes.size();
    }

    CPagedReader& m_file;
    const WordAddress m_firstWord;
};

/// The most bytes that the text of a cell is made of.
std::size_t ReachOf(const CRecipeRows& layout)
{
    std::size_t reach = sizeof(double); // whatever length the item states
    for (const ColumnCoding& column : layout.Columns())
        reach = std::max(reach, 2 * static_cast<std::size_t>(std::max(column.dataLength, 0)));
    return reach;
}

Outcome WalkStretch(const CRecipeRows& layout, CStretch& stretch, RecipeKind kind, CCellTaker& taker)
{
    std::u16string text;
    std::uint64_t rowBegin = 0;
    for (std::int32_t row = 0; row < layout.RowCount(); ++row) {
        for (std::size_t column = 0; column < layout.Columns().size(); ++column) {
            const auto words = stretch.From(rowBegin + 2 * static_cast<std::uint64_t>(layout.WordOffset(column)));
            if (!words)
                return Outcome::Failed;
            std::size_t pos = 0;
            text.clear();
            AppendValue(layout.Columns()[column], *words, pos, kind, text);
            taker.TakeCell(row, column, text);
        }
        rowBegin += 2 * static_cast<std::uint64_t>(layout.WordsPerRow());
    }
    return Outcome::Done;
}

Outcome WalkFlat(const CRecipeRows& layout, const fs::path& path, CCellTaker& taker)
{
    const CFile file(path, CFile::Mode::Read);
    const auto size = file.Size();
    if (!size)
        return Outcome::Failed;
    CFlatStretch stretch(file, layout.FirstByte(), layout.BytesWithin(*size), ReachOf(layout));
    return WalkStretch(layout, stretch, RecipeKind::Flat, taker);
}

Outcome WalkPaged(const CRecipeRows& layout, const fs::path& path, PagedKind kind, CCellTaker& taker)
{
    CPagedReader file;
    if (!file.Open(path, kind) || !file.IsSound(layout.RowAddress(0), layout.StretchBytes()))
        return Outcome::Failed;
    CPagedStretch stretch(file, layout.RowAddress(0), layout.StretchBytes(), ReachOf(layout));
    return WalkStretch(layout, stretch, RecipeKind::Paged, taker);
}

/// Makes cells of fields: those that a line or the table lacks are "0".
class CFieldCells final : public CFieldTaker {
public:
    CFieldCells(const CRecipeRows& layout, CCellTaker& taker) : m_layout(layout), m_taker(taker) {}

    void AddField(std::u16string_view field) override { m_taker.TakeCell(m_row, m_column++, field); }

    void EndLine() override
    {
        while (m_column < m_layout.Columns().size())
            AddField(u"0");
        m_column = 0;
        ++m_row;
    }

    void Finish()
    {
        while (m_row < m_layout.RowCount())
            EndLine();
    }

private:
    const CRecipeRows& m_layout;
    CCellTaker& m_taker;
    std::int32_t m_row = 0;
    std::size_t m_column = 0;
};

Outcome WalkTable(const CRecipeRows& layout, const fs::path& path, CCellTaker& taker)
{
    CFieldCells cells(layout, taker);
    const auto lines = static_cast<std::size_t>(layout.RowCount());
    const Outcome outcome = WalkCsvFields(path, lines, layout.Columns().size(), cells);
    if (outcome == Outcome::Done)
        cells.Finish();
    return outcome;
}

Outcome Walk(FileType type, const CRecipeRows& layout, const fs::path& path, CCellTaker& taker)
{
    if (type == FileType::Csv)
        return WalkTable(layout, path, taker);
    if (IsPaged(type))
        return WalkPaged(layout, path, KindOf(type), taker);
    return WalkFlat(layout, path, taker);
}

} // namespace

bool WalkRecipe(FileType type, const CRecipeRows& layout, const fs::path& path, CCellTaker& taker, CReporter& reporter)
{
    const Outcome outcome = WithinMemory([&] { return Walk(type, layout, path, taker); });
    if (outcome != Outcome::Done)
        ShowFileError(reporter, OpenErrorOf(type), path);
    return outcome == Outcome::Done;
}
