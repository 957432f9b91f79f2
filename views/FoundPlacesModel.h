#pragma once

#include "files/GoToTarget.h"
#include "files/RecipeRows.h"
#include "model/NumberForms.h"

#include <QAbstractTableModel>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// The places in a file where a number was found, a row each.
class CFoundPlacesModel final : public QAbstractTableModel {
    Q_OBJECT

public:
    /// A place in words, or, without a form, a field of a table of texts.
    struct Place {
        std::uint64_t word = 0;   ///< or line
        std::uint32_t form = 0;   ///< or field
        std::u16string text = {}; ///< of a field
    };

    /// `rows`, the table that is shown, and `forms`, of which places are, outlive the model.
    CFoundPlacesModel(const CRecipeRows& rows, const std::vector<NumberForm>& forms, bool areFields, QObject* parent);

    void Clear();
    void Add(Place place) { m_places.push_back(std::move(place)); }

    /// So many of the places that were added are shown from now on, if there are so many.
    void ShowUpTo(std::size_t count);

    std::size_t Count() const { return m_places.size(); } ///< of those that were added
    const Place& At(int row) const { return m_places[static_cast<std::size_t>(row)]; }
    std::optional<CellPlace> CellOf(const Place& place) const; ///< in the table

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    QString FieldText(const Place& place, int column) const;
    QString WordText(const Place& place, int column) const;
    QString CellText(const Place& place) const;

    const CRecipeRows& m_rows;
    const std::vector<NumberForm>& m_forms;
    bool m_areFields;
    std::vector<Place> m_places;
    int m_nShown = 0;
};
