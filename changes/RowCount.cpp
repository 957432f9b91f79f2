#include "changes/RowCount.h"

#include "changes/FileTables.h"
#include "files/CsvCutter.h"
#include "files/WordsOfFile.h"

#include <algorithm>
#include <limits>

namespace fs = std::filesystem;

namespace {

class CNoFields final : public CCsvRawTaker {
public:
    void Take(const CsvRawField&) override {}
};

std::optional<std::uint64_t> LinesOf(const fs::path& path)
{
    const CFile file(path, CFile::Mode::Read);
    CCsvFileCutter cutter(file);
    CNoFields none;
    while (cutter.Continue(none))
        ;
    if (!file.IsOpen() || cutter.HasFailed())
        return std::nullopt;
    return cutter.Cutter().Lines();
}

} // namespace

std::optional<std::uint64_t> ContentCount(const fs::path& path, FileType type)
{
    return type == FileType::Csv ? LinesOf(path) : CWordsOfFile(type, path).Count();
}

std::int32_t RowsIn(const DataFormat& format, std::int32_t start, FileType type, std::uint64_t content)
{
    constexpr std::uint64_t kMost = std::numeric_limits<std::int32_t>::max();
    const std::uint64_t rows =
        type == FileType::Csv ? content : static_cast<std::uint64_t>(WholeRows(format, start, content));
    return static_cast<std::int32_t>(std::min(rows, kMost));
}
