#include "cli/UnsavedCommand.h"

#include "cli/PrintedChanges.h"
#include "recovery/DataFolder.h"
#include "recovery/UnsavedChanges.h"
#include "recovery/UnsavedStore.h"
#include "text/MessageText.h"
#include "text/PathText.h"
#include "text/PrintableText.h"
#include "text/Utf8Text.h"

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <vector>

namespace {

using Result = CUnsavedStore::Result;

std::string_view WordOf(UnsavedState state)
{
    switch (state) {
    case UnsavedState::Open:
        return "open";
    case UnsavedState::Dropped:
        return "dropped";
    case UnsavedState::Left:
        break;
    }
    return "left";
}

std::string LineOf(const UnsavedEntry& entry)
{
    std::string line = entry.id + '\t' + UtcText(entry.lastEdit) + '\t';
    line += entry.header ? std::to_string(entry.edits) : "-";
    line.append("\t").append(WordOf(entry.state)).append("\t");
    if (entry.header)
        AppendPrintable(PathText(entry.header->file), line);
    return line + '\n';
}

bool Refuse(CReporter& reporter, std::u16string_view message, std::string_view id)
{
    reporter.ShowError(FillMessage(message, {FromUtf8(id)}));
    return false;
}

std::vector<UnsavedEntry> EntriesIn(const CUnsavedStore& store, UnsavedState state)
{
    std::vector<UnsavedEntry> entries = store.List();
    std::erase_if(entries, [state](const UnsavedEntry& entry) { return entry.state != state; });
    return entries;
}

/// The journal to show; nothing, and reported, where none was named and it is not clear which.
std::optional<std::string> IdToShow(const UnsavedOptions& options, const CUnsavedStore& store, CReporter& reporter)
{
    if (options.id)
        return options.id;
    const auto left = EntriesIn(store, UnsavedState::Left);
    if (left.size() == 1)
        return left.front().id;
    if (left.empty())
        reporter.ShowError(u"No unsaved edits were left behind!");
    else
        reporter.ShowError(FillMessage(u"Unsaved edits were left behind %d times! Say which by an ID of unsaved list.",
                                       {static_cast<std::int64_t>(left.size())}));
    return std::nullopt;
}

bool IsDone(Result result, const std::string& id, CReporter& reporter)
{
    switch (result) {
    case Result::Missing:
        return Refuse(reporter, u"There are no unsaved edits with the ID %s!", id);
    case Result::Open:
        return Refuse(reporter, u"The unsaved edits %s are open in a window!", id);
    case Result::Failed:
        return Refuse(reporter, u"The unsaved edits %s can't be moved or removed!", id);
    case Result::Done:
        break;
    }
    return true;
}

bool DropAllLeft(const CUnsavedStore& store, CReporter& reporter)
{
    bool areDone = true;
    for (const UnsavedEntry& entry : EntriesIn(store, UnsavedState::Left))
        areDone = IsDone(store.Drop(entry.id), entry.id, reporter) && areDone;
    return areDone;
}

} // namespace

bool ListUnsaved(CStandardOutput& output, CReporter& reporter)
{
    for (const UnsavedEntry& entry : CUnsavedStore(OwnDataFolder()).List())
        output.Write(LineOf(entry));
    return output.Finish(reporter);
}

bool ShowUnsaved(const UnsavedOptions& options, CStandardOutput& output, CReporter& reporter)
{
    const CUnsavedStore store(OwnDataFolder());
    const auto id = IdToShow(options, store, reporter);
    if (!id)
        return false;
    const auto work = store.Read(*id);
    if (!work)
        return Refuse(reporter,
                      store.Has(*id) ? u"The unsaved edits %s can't be read!"
                                     : u"There are no unsaved edits with the ID %s!",
                      *id);
    PrintChanges(CUnsavedChanges(*work), output);
    return output.Finish(reporter);
}

bool DropUnsaved(const UnsavedOptions& options, CReporter& reporter)
{
    const CUnsavedStore store(OwnDataFolder());
    if (!options.id)
        return DropAllLeft(store, reporter);
    const auto dropped = EntriesIn(store, UnsavedState::Dropped);
    const bool isDropped =
        std::any_of(dropped.begin(), dropped.end(), [&](const auto& entry) { return entry.id == *options.id; });
    return IsDone(isDropped ? store.Remove(*options.id) : store.Drop(*options.id), *options.id, reporter);
}
