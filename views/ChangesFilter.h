#pragma once

#include "changes/ChangeList.h"
#include "model/ColumnCoding.h"

#include <QString>

#include <chrono>
#include <functional>
#include <memory>
#include <vector>

/// Looks for the changes of a list that have a text in one of their columns, but for the row's number. It goes on where
/// it stopped, so that a long list stops nobody.
class CChangesFilter {
public:
    /// The column of a change, by its index, whose notes its values are shown with; null for none.
    using ColumnOf = std::function<const ColumnCoding*(std::size_t change)>;

    /// Begins anew. Without a text it finds nothing and has nothing to do.
    void Begin(std::shared_ptr<const CChangeList> list, const QString& text, ColumnOf columnOf);

    /// Begins anew with the same list and text.
    void Restart();

    bool IsOn() const { return !m_strText.isEmpty(); }

    /// Whether it has looked at all changes that the list has now.
    bool IsFinished() const;

    /// Goes on for `time`, or less when it is finished.
    void Work(std::chrono::milliseconds time);

    /// The changes found, by their index in the list, in order.
    const std::vector<std::size_t>& Matches() const { return m_matches; }

private:
    bool Matches(const ChangeRecord& change, const ColumnCoding* coding) const;

    std::shared_ptr<const CChangeList> m_list;
    ColumnOf m_columnOf;
    QString m_strText;
    std::size_t m_nNext = 0;
    std::vector<std::size_t> m_matches;
};
