#pragma once

#include "changes/ChangeList.h"
#include "views/ChangeTexts.h"
#include "views/ChangesFilter.h"

#include <QAbstractTableModel>
#include <QTimer>

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

/// The changes of a list as rows of a table, or those of them that a filter lets through. A row is made when it is
/// painted; a filter looks for its rows in idle time.
class CChangesModel final : public QAbstractTableModel {
    Q_OBJECT

public:
    explicit CChangesModel(QObject* parent = nullptr);

    /// The column of a cell in the table that the list is about; null where that is not known.
    using ColumnOf = std::function<const ColumnCoding*(CellPlace place)>;

    /// Has values shown with what the notes of their columns say of them. What is copied or saved stays without.
    void SetColumns(ColumnOf columnOf) { m_columnOf = std::move(columnOf); }

    /// Shows `list`, which may be null, without a filter.
    void SetList(std::shared_ptr<const CChangeList> list);

    /// Shows the changes with `text` in them; with an empty one, all.
    void SetFilter(const QString& text);

    void ListGrew();    ///< the list has further changes after those it had
    void ListChanged(); ///< the list may have any other changes

    const CChangeList* List() const { return m_list.get(); } ///< null when there is none
    std::shared_ptr<const CChangeList> SharedList() const { return m_list; }
    bool IsFiltered() const { return m_filter.IsOn(); }
    bool IsLooking() const { return !m_filter.IsFinished(); } ///< the filter has not looked at all changes yet

    ChangeRecord ChangeIn(int row) const;
    std::optional<CellPlace> PlaceIn(int row) const;
    std::optional<std::size_t> IndexIn(int row) const;         ///< in the list; nothing for a row that is not there
    std::optional<int> RowOf(std::size_t index) const;         ///< of the change with that index, if it is shown
    std::optional<int> RowAt(CellPlace place, int near) const; ///< of that cell's change, sought around row `near` only

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

signals:
    void CountsChanged(); ///< the rows are others, or the filter has gone on

private:
    /// What a row shows.
    struct Line {
        std::optional<std::size_t> index; ///< of its change
        ChangeTexts texts;
        std::optional<ChangeReason> why;
        CSharedNotes notes; ///< that the texts say
    };

    void LookOn();
    void TakeRows();
    void ForgetLines();
    const ColumnCoding* ColumnOfChange(std::size_t index) const;
    const Line& LineOf(std::size_t index) const;

    ColumnOf m_columnOf;
    std::shared_ptr<const CChangeList> m_list;
    CChangesFilter m_filter;
    QTimer m_idle; ///< runs while the filter looks
    int m_nRows = 0;
    mutable std::array<Line, 128> m_lines; ///< those made last
};
