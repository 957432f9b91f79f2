#pragma once

#include <QString>

#include <cstddef>
#include <vector>

class CRecipeDocument;
class DataFormat;

/// What the first row of the table holds of the items of a format, for those who show the items. Only of the format by
/// which the rows were read: of any other there is nothing to show.
class CFirstRow {
public:
    /// `document` outlives the object.
    explicit CFirstRow(const CRecipeDocument& document) : m_document(document) {}

    /// Looks whether the rows are those of `format`, null for none. To be called when either may be another one. What
    /// the cells hold needs no call.
    void Follow(const DataFormat* format);

    /// The value of the item at `index`, as the table shows it now; of an array the first ones, one after the other.
    /// Empty where there is none.
    QString TextOf(int index) const;

private:
    const CRecipeDocument& m_document;
    std::vector<std::size_t> m_columns; ///< where each item begins, and the end; empty for nothing to show
};
