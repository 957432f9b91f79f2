#include "controls/GridDefaultCell.h"

CGridDefaultCell::CGridDefaultCell(std::uint32_t state, std::uint32_t format, QPalette::ColorRole textRole,
                                   QPalette::ColorRole backRole)
    : m_textRole(textRole),
      m_backRole(backRole)
{
    SetState(state);
    SetFormat(format);
}

void CGridDefaultCell::TakeLook(const QPalette& palette, const QFont& font, int margin)
{
    SetTextColor(palette.color(m_textRole));
    SetBackColor(palette.color(m_backRole));
    SetFont(font);
    SetMargin(margin);
}
