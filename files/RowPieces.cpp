#include "files/RowPieces.h"

#include "disk/File.h"
#include "files/ByteBuffer.h"
#include "files/CsvCutter.h"
#include "files/FieldTable.h"
#include "files/RowWindow.h"
#include "files/StretchCoding.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kPieceBytes = std::size_t{256} << 10; // unless a row is longer

class CWordPieces final : public CRowPieces {
public:
    CWordPieces(FileType type, const CRecipeRows& layout, CWordBytes& words)
        : CRowPieces(type, layout),
          m_images(type, Layout(), words),
          m_rowsAtOnce(RowsWithin(kPieceBytes, layout))
    {
    }

    bool Next() override
    {
        const std::int32_t count = std::min(m_rowsAtOnce, RowsLeft());
        if (count <= 0 || HasFailed())
            return false;
        const std::int32_t first = NextRow();
        CRecipeRows& rows = Begin(count, m_images.HeldBytes(first, count));
        auto image = m_images.Read(first, count);
        if (!image)
            return Fail();
        rows.ShowWords(std::move(*image), m_images.Kind());
        return true;
    }

private:
    CRowImages m_images;
    const std::int32_t m_rowsAtOnce;
};

/// Collects the shown fields of lines. The line at hand stands apart until it ends.
class CLineCollector final : public CCsvRawTaker {
public:
    CLineCollector(const CsvTextForm& form, std::size_t columns) : m_form(form), m_columns(columns) {}

    void Take(const CsvRawField& field) override
    {
        if (field.column < m_columns && field.IsField()) {
            m_text += field.Shown(m_form);
            m_ends.push_back(m_text.size());
        }
        if (field.EndsLine())
            EndLine();
    }

    std::size_t LineCount() const { return m_lines.LineCount(); }

    /// The lines that have ended since the last call.
    CFieldTable TakeLines() { return std::exchange(m_lines, {}); }

private:
    void EndLine()
    {
        std::size_t begin = 0;
        for (const std::size_t end : m_ends) {
            m_lines.AddField(std::u16string_view(m_text).substr(begin, end - begin));
            begin = end;
        }
        m_lines.EndLine();
        m_text.clear();
        m_ends.clear();
    }

    const CsvTextForm& m_form;
    const std::size_t m_columns;
    CFieldTable m_lines;
    std::u16string m_text; ///< of the fields of the line at hand, as far as it has come
    std::vector<std::size_t> m_ends;
};

class CTextPieces final : public CRowPieces {
public:
    CTextPieces(const CRecipeRows& layout, const fs::path& path)
        : CRowPieces(FileType::Csv, layout),
          m_file(path, CFile::Mode::Read),
          m_cutter(m_file),
          m_collector(m_cutter.Form(), layout.Columns().size())
    {
    }

    bool Next() override
    {
        if (HasFailed() || RowsLeft() <= 0)
            return false;
        while (m_collector.LineCount() == 0 && m_cutter.Continue(m_collector))
            ;
        if (!m_file.IsOpen() || m_cutter.HasFailed())
            return Fail();
        ShowLines();
        return true;
    }

private:
    /// Those that were cut; the rows that the file ends before, at once when there are no more lines.
    void ShowLines()
    {
        const std::size_t lines = m_collector.LineCount();
        const auto count =
            static_cast<std::int32_t>(std::min<std::size_t>(lines, static_cast<std::size_t>(RowsLeft())));
        CRecipeRows& rows = Begin(lines == 0 ? MissingRowsAtOnce() : count, 0);
        rows.ShowFields(m_collector.TakeLines());
    }

    std::int32_t MissingRowsAtOnce() const { return std::min(RowsLeft(), std::int32_t{4096}); }

    const CFile m_file;
    CCsvFileCutter m_cutter;
    CLineCollector m_collector;
};

} // namespace

CRecipeRows& CRowPieces::Begin(std::int32_t count, std::uint64_t bytes)
{
    m_first = m_next;
    m_next += count;
    m_bytes = bytes;
    if (m_rows.RowCount() != count || m_rows.Columns().empty())
        m_rows.LayOut(m_layout.Columns(), 0, count);
    return m_rows;
}

bool CRowPieces::Fail()
{
    m_hasFailed = true;
    return false;
}

std::unique_ptr<CRowPieces> PiecesOfWords(FileType type, const CRecipeRows& layout, CWordBytes& words)
{
    return std::make_unique<CWordPieces>(type, layout, words);
}

std::unique_ptr<CRowPieces> PiecesOfTexts(const CRecipeRows& layout, const fs::path& path)
{
    return std::make_unique<CTextPieces>(layout, path);
}
