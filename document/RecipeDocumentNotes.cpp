// What the items of the rows mean: it follows the library, and is no part of any edit.

#include "document/EditMemory.h"
#include "document/RecipeDocument.h"
#include "library/ItemsInUse.h"

/// Without memory for it all stay as they are.
bool CRecipeDocument::TakeNotes() noexcept
{
    if (m_pStore == nullptr)
        return false;
    bool areOthers = false;
    WithMemoryFor([&] {
        const Formats& formats = m_pStore->Library().formats;
        TakeNotesFrom(formats, m_settings.format);
        areOthers = TakeNotesFrom(formats, m_shown.settings.format);
        if (areOthers && ShowsRows())
            m_shown.rows.TakeNotesOf(LayOutColumns(m_shown.settings.format));
    });
    m_notesEdition += areOthers ? 1 : 0;
    return areOthers;
}
