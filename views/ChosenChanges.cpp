#include "views/ChosenChanges.h"

#include "views/ChangesModel.h"

#include <QItemSelectionModel>

#include <algorithm>

namespace {

constexpr int kMostRemembered = 100; // rows: each may be sought in vain

} // namespace

std::vector<RowStretch> ChosenRows(const QItemSelectionModel& selection)
{
    std::vector<RowStretch> stretches;
    for (const QItemSelectionRange& range : selection.selection())
        stretches.push_back({range.top(), range.bottom()});
    std::sort(stretches.begin(), stretches.end(),
              [](const RowStretch& a, const RowStretch& b) { return a.first < b.first; });
    std::vector<RowStretch> parted;
    for (const RowStretch& stretch : stretches)
        if (!parted.empty() && stretch.first <= parted.back().last)
            parted.back().last = std::max(parted.back().last, stretch.last);
        else
            parted.push_back(stretch);
    return parted;
}

int RowsIn(const std::vector<RowStretch>& stretches)
{
    int rows = 0;
    for (const RowStretch& stretch : stretches)
        rows += stretch.last - stretch.first + 1;
    return rows;
}

void CChosenChanges::Remember(const QItemSelectionModel& selection, const CChangesModel& model)
{
    m_nCurrent = selection.currentIndex().row();
    m_current = model.PlaceIn(m_nCurrent);
    m_chosen.clear();
    const auto stretches = ChosenRows(selection);
    if (RowsIn(stretches) > kMostRemembered)
        return;
    for (const RowStretch& stretch : stretches)
        for (int row = stretch.first; row <= stretch.last; ++row)
            if (const auto place = model.PlaceIn(row))
                m_chosen.emplace(row, *place);
}

void CChosenChanges::ChooseAgain(QItemSelectionModel& selection, const CChangesModel& model) const
{
    const auto current = m_current ? model.RowAt(*m_current, m_nCurrent) : std::nullopt;
    const int moved = current ? *current - m_nCurrent : 0;
    QItemSelection chosen;
    for (const auto& [before, place] : m_chosen)
        if (const auto row = model.RowAt(place, before + moved))
            chosen.select(model.index(*row, 0), model.index(*row, model.columnCount() - 1));
    selection.select(chosen, QItemSelectionModel::ClearAndSelect);
    const int row = std::min(current.value_or(m_nCurrent), model.rowCount() - 1);
    selection.setCurrentIndex(model.index(row, std::max(selection.currentIndex().column(), 0)),
                              QItemSelectionModel::NoUpdate);
}
