#include "controls/GridCellBase.h"

CGridCellBase::Extras& CGridCellBase::Extra()
{
    if (!m_extras)
        m_extras = std::make_unique<Extras>();
    return *m_extras;
}
