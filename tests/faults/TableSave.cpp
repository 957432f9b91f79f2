// vantor-table-save edits FILE: saves two edited cells of the table FILE alone.
// vantor-table-save put-back FILE OLD SAVED: gives FILE, which a save made SAVED of, the bytes of OLD back, but for one
// cell. Prints a line when that fails and ends with 1.

#include "disk/File.h"
#include "files/CsvEdits.h"
#include "files/CsvFields.h"
#include "files/CsvPutBack.h"
#include "text/Utf8Text.h"

#include <cstdio>
#include <string_view>
#include <vector>

namespace {

constexpr std::size_t kRows = 4;
constexpr std::size_t kColumns = 2;

class CErrorPrinter final : public CReporter {
public:
    void ShowError(std::u16string_view text) override { std::fprintf(stderr, "%s\n", ToUtf8(text).c_str()); }
    bool AskYesNo(std::u16string_view) override { return false; }
};

bool SaveEdits(const std::filesystem::path& path)
{
    const std::vector<CsvEdit> edits = {{{1, 0}, u"291"}, {{3, 1}, u"xy"}};
    CErrorPrinter printer;
    CNoProgress progress;
    return bool(SaveCsvEdits(edits, path, printer, progress));
}

bool PutBack(const std::filesystem::path& path, const std::filesystem::path& oldPath,
             const std::filesystem::path& savedPath)
{
    constexpr std::uint64_t kLimit = 1 << 20;
    CNoProgress progress;
    CFieldTable stored;
    const auto old = ReadWholeFile(oldPath, kLimit);
    if (!old || ReadCsvFields(savedPath, kRows, kColumns, stored, progress) != Outcome::Done) {
        std::fputs("the files aside cannot be read\n", stderr);
        return false;
    }
    CErrorPrinter printer;
    const std::vector<CellPlace> kept = {{1, 0}};
    return bool(PutBackCsv({old->Bytes(), kRows, kColumns, stored, kept}, path, printer, progress));
}

} // namespace

int main(int argc, char* argv[])
{
    SurviveFailedWrites();
    const std::vector<std::string_view> arguments(argv + 1, argv + argc);
    if (arguments.size() == 2 && arguments[0] == "edits")
        return SaveEdits(arguments[1]) ? 0 : 1;
    if (arguments.size() == 4 && arguments[0] == "put-back")
        return PutBack(arguments[1], arguments[2], arguments[3]) ? 0 : 1;
    return 2;
}
