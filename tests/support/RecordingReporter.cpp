#include "tests/support/RecordingReporter.h"

void CRecordingReporter::ShowError(std::u16string_view text)
{
    shown.emplace_back(text);
}

bool CRecordingReporter::AskYesNo(std::u16string_view text)
{
    asked.emplace_back(text);
    return answer;
}
