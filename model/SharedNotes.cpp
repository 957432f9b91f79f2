#include "model/SharedNotes.h"

#include "model/ItemNotes.h"

#include <utility>

CSharedNotes::CSharedNotes(ItemNotes notes)
    : m_pNotes(notes.IsEmpty() ? nullptr : std::make_shared<const ItemNotes>(std::move(notes)))
{
}

const ItemNotes& CSharedNotes::operator*() const
{
    static const ItemNotes kNone;
    return m_pNotes ? *m_pNotes : kNone;
}

bool operator==(const CSharedNotes& a, const CSharedNotes& b)
{
    return a.m_pNotes == b.m_pNotes || *a == *b;
}
