#include "files/CellTexts.h"

CCellTexts::CCellTexts(const CRecipeRows& rows)
    : m_rows(rows),
      m_image(rows.Image()),
      m_next(rows.m_touchedCells.begin()),
      m_end(rows.m_touchedCells.end())
{
}

std::u16string_view CCellTexts::Text()
{
    if (IsTouched() && m_next->second.state.IsText())
        return m_next->second.state.Text();
    if (!IsTouched() && m_rows.m_source == CRecipeRows::Source::Fields)
        return m_rows.m_fields->Field(static_cast<std::size_t>(m_row), m_column);
    m_text.clear();
    AppendTo(m_text);
    return m_text;
}
