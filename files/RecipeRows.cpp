#include "files/RecipeRows.h"

#include "model/ValueLimits.h"

#include <algorithm>
#include <cstddef>
#include <utility>

void CRecipeRows::LayOut(std::vector<ColumnCoding> columns, std::int32_t startAddress, std::int32_t rowCount)
{
    m_columns = std::move(columns);
    m_startAddress = startAddress;
    m_rowCount = std::max(rowCount, 0);
    m_wordsPerRow = 0;
    m_wordOffsets.clear();
    m_wordOffsets.reserve(m_columns.size());
    for (const ColumnCoding& column : m_columns) {
        m_wordOffsets.push_back(m_wordsPerRow);
        m_wordsPerRow += column.dataLength;
    }
    ShowNothing();
}

void CRecipeRows::Clear()
{
    LayOut({}, 0, 0);
}

std::uint64_t CRecipeRows::StretchBytes() const
{
    return 2 * static_cast<std::uint64_t>(m_wordsPerRow) * static_cast<std::uint64_t>(m_rowCount);
}

std::uint64_t CRecipeRows::FirstByte() const
{
    return 2 * static_cast<std::uint64_t>(m_startAddress);
}

std::uint64_t CRecipeRows::BytesWithin(std::uint64_t fileSize) const
{
    return fileSize <= FirstByte() ? 0 : std::min(fileSize - FirstByte(), StretchBytes());
}

std::int64_t CRecipeRows::WordAddress(std::int32_t row) const
{
    return m_startAddress + static_cast<std::int64_t>(m_wordsPerRow) * row;
}

void CRecipeRows::ShowNothing()
{
    Show(Source::Nothing);
}

void CRecipeRows::ShowNewDocument()
{
    Show(Source::NewDocument);
}

void CRecipeRows::ShowWords(CByteBuffer image, RecipeKind kind)
{
    Show(Source::Words);
    m_image = std::move(image);
    m_kind = kind;
}

void CRecipeRows::ShowEverywhere(CByteBuffer words, RecipeKind kind)
{
    Show(Source::SameWords);
    m_image = std::move(words);
    m_kind = kind;
}

void CRecipeRows::ShowFields(CFieldTable fields)
{
    Show(Source::Fields);
    m_fields = std::move(fields);
}

std::u16string CRecipeRows::Text(std::int32_t row, std::size_t column) const
{
    std::u16string text;
    AppendText(row, column, text);
    return text;
}

void CRecipeRows::AppendText(std::int32_t row, std::size_t column, std::u16string& text) const
{
    if (!Holds(row, column))
        return;
    const auto changed = m_changedTexts.find(CellKey(row, column));
    if (changed != m_changedTexts.end())
        text += changed->second.text;
    else
        AppendUntouched(row, column, text);
}

bool CRecipeRows::SetText(std::int32_t row, std::size_t column, std::u16string_view text)
{
    if (!Holds(row, column))
        return false;
    m_changedTexts.insert_or_assign(CellKey(row, column), ChangedText{std::u16string(text), m_saves});
    return true;
}

bool CRecipeRows::IsChanged(std::int32_t row, std::size_t column) const
{
    if (!Holds(row, column))
        return false;
    const auto changed = m_changedTexts.find(CellKey(row, column));
    return changed != m_changedTexts.end() && changed->second.saves == m_saves;
}

std::optional<std::u16string> CRecipeRows::OutsideLimits(std::int32_t row, std::size_t column) const
{
    if (!Holds(row, column))
        return std::nullopt;
    const ColumnCoding& coding = m_columns[column];
    const auto changed = m_changedTexts.find(CellKey(row, column));
    if (changed != m_changedTexts.end())
        return ValueOutsideLimits(coding, changed->second.text);
    switch (m_source) {
    case Source::Nothing:
        break;
    case Source::NewDocument:
        return ValueOutsideLimits(coding, u"0");
    case Source::Fields:
        return ValueOutsideLimits(coding, m_fields.Field(static_cast<std::size_t>(row), column));
    case Source::Words:
    case Source::SameWords:
        return ValueOutsideLimits(coding, m_image.Bytes(), PositionInImage(row, column));
    }
    return std::nullopt;
}

void CRecipeRows::Show(Source source)
{
    m_source = source;
    m_image = CByteBuffer();
    m_fields = CFieldTable();
    m_changedTexts.clear();
}

bool CRecipeRows::Holds(std::int32_t row, std::size_t column) const
{
    return row >= 0 && row < m_rowCount && column < m_columns.size();
}

void CRecipeRows::AppendUntouched(std::int32_t row, std::size_t column, std::u16string& text) const
{
    const ColumnCoding& coding = m_columns[column];
    switch (m_source) {
    case Source::Nothing:
        return;
    case Source::NewDocument:
        if (coding.dataType != DataType::String)
            text += u'0';
        return;
    case Source::Fields:
        text += m_fields.Field(static_cast<std::size_t>(row), column);
        return;
    case Source::Words:
    case Source::SameWords:
        std::size_t pos = PositionInImage(row, column);
        AppendValue(coding, m_image.Bytes(), pos, m_kind, text);
        return;
    }
}
