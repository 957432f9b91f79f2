#pragma once

#include <memory>

struct ItemNotes;

/// The notes of an item, shared by its copies and its columns. Cheap to copy; what it holds does not change any more.
class CSharedNotes {
public:
    CSharedNotes() = default; ///< empty ones
    explicit CSharedNotes(ItemNotes notes);

    const ItemNotes& operator*() const;
    const ItemNotes* operator->() const { return &**this; }

    bool IsEmpty() const { return m_pNotes == nullptr; }

    /// Whether they say the same.
    friend bool operator==(const CSharedNotes& a, const CSharedNotes& b);

private:
    std::shared_ptr<const ItemNotes> m_pNotes; ///< null for empty ones
};
