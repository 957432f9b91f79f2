#include "controls/GridSelectionModel.h"

void CGridSelectionModel::setCurrentIndex(const QModelIndex& index, QItemSelectionModel::SelectionFlags command)
{
    if (index.isValid() && index != currentIndex()) {
        const QPersistentModelIndex target(index);
        emit FocusMoving(index);
        if (!target.isValid()) // who was told has emptied the grid
            return;
    }
    QItemSelectionModel::setCurrentIndex(index, command);
}
