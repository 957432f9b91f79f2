#include "text/FileMessages.h"

#include "text/MessageText.h"
#include "text/PathText.h"

void ShowFileError(CReporter& reporter, std::u16string_view message, const std::filesystem::path& path)
{
    reporter.ShowError(FillMessage(message, {PathText(path)}));
}
