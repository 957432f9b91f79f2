#include "files/FileMessages.h"

#include "files/PathText.h"
#include "model/MessageText.h"

void ShowFileError(CReporter& reporter, std::u16string_view message, const std::filesystem::path& path)
{
    reporter.ShowError(FillMessage(message, {PathText(path)}));
}
