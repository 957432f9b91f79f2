#include "cli/VersionChoice.h"

#include "text/MessageText.h"
#include "text/PathText.h"
#include "text/Utf8Text.h"

#include <vector>

std::optional<Version> ChosenVersion(const CVersionStore& store, const std::filesystem::path& file,
                                     const std::string& time, CReporter& reporter)
{
    const std::vector<Version> found = store.Find(file, time);
    if (found.size() == 1 || (!found.empty() && time.empty()))
        return found.front();
    if (time.empty())
        reporter.ShowError(FillMessage(u"File %s has no earlier version!", {PathText(file)}));
    else
        reporter.ShowError(FillMessage(found.empty() ? u"File %s has no version %s!"
                                                     : u"File %s has several versions that begin with %s!",
                                       {PathText(file), FromUtf8(time)}));
    return std::nullopt;
}
