#include "document/EditStep.h"

#include "text/MessageText.h"

#include <algorithm>

namespace {

std::size_t FurtherBytes(const DataFormat& format)
{
    return format.items.size() * (sizeof(DataItem) + sizeof(void*));
}

struct CStepBytes {
    const void* shownSource;

    std::size_t operator()(const CellsStep& step) const
    {
        std::size_t bytes = step.edits.capacity() * sizeof(CellEdit);
        for (const CellEdit& edit : step.edits)
            bytes += edit.other.FurtherBytes();
        return bytes;
    }

    std::size_t operator()(const RowsStep& step) const
    {
        const CRecipeRows& rows = step.other->rows;
        const std::size_t source = rows.SourceId() == shownSource ? 0 : rows.SourceBytes();
        const CRecipeRows& stored = step.other->stored.Cells();
        const bool isShared = stored.SourceId() == rows.SourceId() || stored.SourceId() == shownSource;
        return sizeof(ShownRows) + source + (isShared ? 0 : stored.SourceBytes()) + rows.FurtherBytes() +
               stored.FurtherBytes() + FurtherBytes(step.other->settings.format);
    }

    std::size_t operator()(const FormatChange& step) const
    {
        std::size_t bytes = 0;
        for (const DataFormat* format : {step.before.get(), step.after.get()})
            bytes += format != nullptr ? sizeof(DataFormat) + FurtherBytes(*format) : 0;
        return bytes;
    }
};

std::u16string_view KindName(EditKind kind)
{
    switch (kind) {
    case EditKind::Typing:
        return u"Typing";
    case EditKind::Paste:
        return u"Paste";
    case EditKind::Cut:
        return u"Cut";
    case EditKind::Clear:
        return u"Clear";
    case EditKind::BitBrowser:
        return u"BitBrowse";
    case EditKind::Fill:
        return u"Fill";
    case EditKind::Calculate:
        return u"Calculate";
    case EditKind::Replace:
        return u"Replace";
    case EditKind::ImportTable:
        return u"Import table";
    case EditKind::KeepStored:
        return u"Keep stored";
    case EditKind::StoreExactly:
        return u"Store exactly";
    case EditKind::TakeOver:
        return u"Take over";
    case EditKind::ApplyPatch:
        return u"Apply patch";
    case EditKind::PutBack:
        return u"Put back";
    case EditKind::Reading:
        return u"Reading again";
    case EditKind::AddItem:
        return u"Add DataItem";
    case EditKind::ModifyItem:
        return u"Modify DataItem";
    case EditKind::DeleteItem:
        return u"Del DataItem";
    case EditKind::DeleteAllItems:
        return u"Del All DataItem";
    case EditKind::KeepAllItems:
        return u"Keep all";
    case EditKind::MoveItem:
        return u"Move DataItem";
    case EditKind::DuplicateItem:
        return u"Duplicate DataItem";
    case EditKind::AddFormat:
        return u"Add Dataformat";
    case EditKind::DeleteFormat:
        return u"Delete cur Dataformat";
    case EditKind::DuplicateFormat:
        return u"Duplicate Dataformat";
    case EditKind::RenameFormat:
        return u"Rename Dataformat";
    case EditKind::Notes:
        return u"Notes";
    }
    return {};
}

/// The name of the item that got other notes; empty where none did.
std::u16string_view ItemWithOtherNotes(const Edit& edit)
{
    for (const EditStep& step : edit.steps) {
        const auto* change = std::get_if<FormatChange>(&step);
        if (change == nullptr || !change->before || !change->after)
            continue;
        const auto& before = change->before->items;
        const auto& after = change->after->items;
        for (std::size_t i = 0; i < std::min(before.size(), after.size()); ++i)
            if (!(before[i]->notes == after[i]->notes))
                return TextOf(after[i]->description);
    }
    return {};
}

} // namespace

std::size_t BytesOf(const Edit& edit, const void* shownSource)
{
    std::size_t bytes = sizeof(Edit) + edit.steps.capacity() * sizeof(EditStep);
    for (const EditStep& step : edit.steps)
        bytes += std::visit(CStepBytes{shownSource}, step);
    return bytes;
}

bool ChangesRows(const Edit& edit)
{
    return std::any_of(edit.steps.begin(), edit.steps.end(),
                       [](const EditStep& step) { return !std::holds_alternative<FormatChange>(step); });
}

std::size_t CellCountOf(const Edit& edit)
{
    std::size_t cells = 0;
    for (const EditStep& step : edit.steps)
        if (const auto* changed = std::get_if<CellsStep>(&step))
            cells += changed->edits.size();
    return cells;
}

std::u16string NameOf(const Edit& edit)
{
    std::u16string name(KindName(edit.kind));
    if (const auto item = edit.kind == EditKind::Notes ? ItemWithOtherNotes(edit) : std::u16string_view();
        !item.empty())
        name += FillMessage(u" of %s", {item});
    const std::size_t cells = CellCountOf(edit);
    if (cells > 1)
        name += FillMessage(u" (%d cells)", {static_cast<std::int64_t>(cells)});
    return name;
}
