#pragma once

#include "controls/GridCell.h"

#include <QPalette>

/// The cell whose attributes serve the cells that set none. A grid has four: for data cells, fixed rows, fixed columns
/// and the corner where both meet.
class CGridDefaultCell final : public CGridCell {
public:
    CGridDefaultCell(std::uint32_t state, std::uint32_t format, QPalette::ColorRole textRole,
                     QPalette::ColorRole backRole);

    /// Takes the colours and the font that a cell without its own has.
    void TakeLook(const QPalette& palette, const QFont& font, int margin);

private:
    QPalette::ColorRole m_textRole;
    QPalette::ColorRole m_backRole;
};
