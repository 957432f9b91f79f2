#include "files/CellTexts.h"

CCellTexts::CCellTexts(const CRecipeRows& rows)
    : m_rows(rows),
      m_image(rows.m_image.Bytes()),
      m_change(rows.m_changedTexts.begin()),
      m_end(rows.m_changedTexts.end())
{
}

std::u16string_view CCellTexts::Text()
{
    if (IsChanged())
        return m_change->second.text;
    if (m_rows.m_source == CRecipeRows::Source::Fields)
        return m_rows.m_fields.Field(static_cast<std::size_t>(m_row), m_column);
    m_text.clear();
    m_rows.AppendUntouched(m_row, m_column, m_text);
    return m_text;
}
