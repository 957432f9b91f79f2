#pragma once

#include "files/CellState.h"

#include <map>
#include <optional>
#include <vector>

class CChangesModel;
class QItemSelectionModel;

/// Rows one after the other.
struct RowStretch {
    int first;
    int last;
};

/// The chosen rows in order, each once.
std::vector<RowStretch> ChosenRows(const QItemSelectionModel& selection);

/// How many rows these are.
int RowsIn(const std::vector<RowStretch>& stretches);

/// Which cells' changes are chosen, so that the same ones are once the list has other changes.
class CChosenChanges {
public:
    /// Takes what is chosen now; to be called while the list is as it is shown.
    void Remember(const QItemSelectionModel& selection, const CChangesModel& model);

    /// Chooses the changes of these cells again. One that is there no more is not chosen, and when it was the current
    /// one, what has its row now becomes that. Of very many chosen none is, and only the current one stays what it is.
    void ChooseAgain(QItemSelectionModel& selection, const CChangesModel& model) const;

private:
    std::map<int, CellPlace> m_chosen; ///< by their rows
    int m_nCurrent = -1;
    std::optional<CellPlace> m_current;
};
