#include "document/TableImport.h"

#include "files/TableTitles.h"
#include "text/AnsiText.h"
#include "text/EscapedText.h"
#include "text/MessageText.h"
#include "text/Surrogates.h"
#include "text/Utf8Text.h"

#include <algorithm>
#include <map>
#include <utility>

namespace {

constexpr std::size_t kMostShown = 40;    // units of a field that is refused
constexpr std::size_t kRowsAtOnce = 1024; // between two looks at the progress

std::u16string FromUtf16(std::string_view bytes, bool isHighFirst)
{
    std::u16string text;
    text.reserve(bytes.size() / 2);
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        const auto high = static_cast<unsigned char>(bytes[isHighFirst ? i : i + 1]);
        const auto low = static_cast<unsigned char>(bytes[isHighFirst ? i + 1 : i]);
        text += static_cast<char16_t>(high << 8U | low);
    }
    return text;
}

std::u16string_view Trimmed(std::u16string_view text)
{
    const auto first = text.find_first_not_of(u" \u00A0");
    if (first == std::u16string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(u" \u00A0") - first + 1);
}

/// The titles of a table as it is copied with them: the columns of its row numbers and addresses are no items.
bool IsTitleOfRows(std::u16string_view title)
{
    return title == kIdTitle || title == kAddressTitle;
}

/// Fields of a text for cells; a column of the table gets those of one column.
class CImportFields final : public CCellsCommand {
public:
    struct Source {
        std::size_t column; ///< of the text
        NumberSign sign;
        ColumnCoding coding;
    };

    CImportFields(std::shared_ptr<const CDelimitedText> text, std::size_t titleLines, std::int32_t firstRow,
                  std::int32_t lastRow, std::map<std::uint32_t, Source> sources)
        : m_text(std::move(text)),
          m_titleLines(titleLines),
          m_firstRow(firstRow),
          m_sources(std::move(sources))
    {
        std::vector<CellRange> ranges;
        for (const auto& [column, source] : m_sources)
            ranges.push_back({firstRow, lastRow, column, column});
        m_cells = CChosenCells(ranges);
    }

    const CChosenCells& Cells() const override { return m_cells; }

    CellVerdict Judge(CellPlace place, const CCellJudge& judge) const override
    {
        const auto source = m_sources.find(place.column);
        if (source == m_sources.end() || place.row < m_firstRow)
            return {};
        const auto row = static_cast<std::size_t>(place.row - m_firstRow) + m_titleLines;
        const auto& [column, sign, coding] = source->second;
        const std::u16string_view field = m_text->Field(row, column);
        if (field.empty())
            return {};
        const auto text = TextOfField(coding, field, sign);
        return text ? judge.Entered(place, *text) : NoNumber(field, sign);
    }

private:
    static CellVerdict NoNumber(std::u16string_view field, NumberSign sign)
    {
        const std::u16string_view part = CutText(field, kMostShown);
        return CellVerdict::Refused(FillMessage(sign == NumberSign::Comma ? u"%s is no number with a decimal comma"
                                                                          : u"%s is no number with a decimal point",
                                                {EscapedText(part)}));
    }

    std::shared_ptr<const CDelimitedText> m_text;
    std::size_t m_titleLines;
    std::int32_t m_firstRow;
    std::map<std::uint32_t, Source> m_sources; ///< by column of the table
    CChosenCells m_cells;
};

} // namespace

std::u16string TextOfBytes(std::string_view bytes)
{
    if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF"))
        return FromUtf16(bytes.substr(2), bytes.front() == '\xFE');
    if (bytes.starts_with("\xEF\xBB\xBF"))
        return FromUtf8(bytes.substr(3));
    std::u16string text = FromUtf8(bytes);
    return ToUtf8(text) == bytes ? text : FromAnsi(bytes);
}

bool CTableImport::LooksLikeTitles(const CDelimitedText& text, const CRecipeRows& rows)
{
    bool isOneAnItem = false;
    for (std::size_t column = 0; column < text.FieldCount(0); ++column) {
        const std::u16string_view field = Trimmed(text.Field(0, column));
        const auto isItem = [field](const ColumnCoding& coding) { return Trimmed(coding.title) == field; };
        if (!field.empty() && std::any_of(rows.Columns().begin(), rows.Columns().end(), isItem))
            isOneAnItem = true;
        else if (PlainNumber(field, NumberSign::Point) || PlainNumber(field, NumberSign::Comma))
            return false;
    }
    return isOneAnItem;
}

std::optional<CTableImport> CTableImport::Make(std::shared_ptr<const CDelimitedText> text, const CRecipeRows& rows,
                                               const ImportTarget& target, CProgress& progress)
{
    CTableImport import;
    import.m_text = std::move(text);
    import.m_codings = rows.Columns();
    import.m_firstRow = target.firstRow;
    import.m_titleLines = target.hasTitles && import.m_text->RowCount() > 0 ? 1 : 0;
    const auto lines = static_cast<std::int64_t>(import.m_text->RowCount() - import.m_titleLines);
    import.m_rowCount = std::clamp<std::int64_t>(std::int64_t{rows.RowCount()} - target.firstRow, 0, lines);
    import.m_rowsLeftOut = lines - import.m_rowCount;
    import.FindTargets(rows, target);
    if (!import.LookAtFields(rows, progress))
        return std::nullopt;
    return import;
}

/// Of items with one title the first is the first column's.
void CTableImport::FindTargets(const CRecipeRows& rows, const ImportTarget& target)
{
    const auto& codings = rows.Columns();
    std::vector<bool> isTaken(codings.size(), false);
    m_columns.resize(m_text->MostFields());
    for (std::size_t i = 0; i < m_columns.size(); ++i) {
        if (m_titleLines == 0) {
            if (target.firstColumn + i < codings.size())
                m_columns[i].target = static_cast<std::uint32_t>(target.firstColumn + i);
            continue;
        }
        m_columns[i].title = Trimmed(m_text->Field(0, i));
        for (std::size_t item = 0; item < codings.size() && !m_columns[i].target; ++item)
            if (!isTaken[item] && Trimmed(codings[item].title) == m_columns[i].title) {
                m_columns[i].target = static_cast<std::uint32_t>(item);
                isTaken[item] = true;
            }
    }
}

bool CTableImport::LookAtFields(const CRecipeRows& rows, CProgress& progress)
{
    std::vector<std::optional<CColumnForms>> forms(m_columns.size());
    for (std::size_t i = 0; i < m_columns.size(); ++i)
        if (m_columns[i].target)
            forms[i].emplace(rows.Columns()[*m_columns[i].target]);
    const auto count = static_cast<std::size_t>(m_rowCount);
    for (std::size_t row = 0; row < count; ++row) {
        if (row % kRowsAtOnce == 0 && !progress.Advance(row, count))
            return false;
        for (std::size_t i = 0; i < m_columns.size(); ++i) {
            if (!forms[i])
                continue;
            const std::u16string_view field = m_text->Field(row + m_titleLines, i);
            m_emptyFields += field.empty() ? 1U : 0U;
            if (m_columns[i].sample.empty())
                m_columns[i].sample = field;
            forms[i]->Take(field);
        }
    }
    for (std::size_t i = 0; i < m_columns.size(); ++i)
        if (forms[i]) {
            m_columns[i].sign = forms[i]->Sign();
            m_columns[i].doubtful = forms[i]->Doubtful();
        }
    return true;
}

bool CTableImport::IsDecided() const
{
    return std::none_of(m_columns.begin(), m_columns.end(),
                        [](const Column& column) { return column.target && column.sign == NumberSign::Undecided; });
}

std::size_t CTableImport::ColumnsLeftOut() const
{
    return static_cast<std::size_t>(std::count_if(m_columns.begin(), m_columns.end(), [](const Column& column) {
        return !column.target && !IsTitleOfRows(column.title);
    }));
}

std::shared_ptr<const CCellsCommand> CTableImport::Command() const
{
    std::map<std::uint32_t, CImportFields::Source> sources;
    for (std::size_t i = 0; i < m_columns.size() && m_rowCount > 0; ++i)
        if (const auto target = m_columns[i].target)
            sources[*target] = {i, m_columns[i].sign, m_codings[*target]};
    return std::make_shared<CImportFields>(m_text, m_titleLines, m_firstRow,
                                           static_cast<std::int32_t>(m_firstRow + m_rowCount - 1), std::move(sources));
}
