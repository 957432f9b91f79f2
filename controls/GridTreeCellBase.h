#pragma once

#include "controls/GridCellBase.h"

/// A cell that stands at a level of a tree and may be expanded.
class CGridTreeCellBase : public CGridCellBase {
public:
    int Level() const { return m_nLevel; } ///< 0 at the root
    void SetLevel(int level) { m_nLevel = level; }
    bool IsExpanded() const { return m_bExpanded; }
    void SetExpanded(bool expanded) { m_bExpanded = expanded; }

private:
    int m_nLevel = 0;
    bool m_bExpanded = false;
};
