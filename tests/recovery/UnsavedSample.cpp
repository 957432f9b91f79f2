#include "tests/recovery/UnsavedSample.h"

#include "library/JsonText.h"
#include "recovery/JournalPlace.h"
#include "tests/support/Formats.h"

#include <utility>

namespace fs = std::filesystem;

WorkHeader SampleHeader(FileType type)
{
    constexpr const char* kNames[] = {"oven.rcp", "oven.csv", "oven.erp", "oven.frp"};
    WorkHeader header;
    header.file = fs::path("/recipes") / kNames[static_cast<std::size_t>(type)];
    header.type = type;
    header.readAs = type;
    header.format = MakeFormat(u"Oven", {MakeItem(u"Level", DataType::Signed16, 1, 4),
                                         ArrayOf(MakeItem(u"Temp", DataType::Float, 2, 4, 1), 2),
                                         MakeItem(u"Name", DataType::String, 2, 4)});
    header.startAddress = 100;
    header.rowCount = 3;
    header.begun = *TimeOfStamp("20261122T110208.123Z");
    return header;
}

UnsavedCell TextCell(CellPlace place, std::u16string text, WordRun old)
{
    return {place, CCellState::OfText(std::move(text)), std::move(old), std::nullopt};
}

namespace {

void AppendText(std::u16string_view text, std::string& told)
{
    AppendWholeJsonText(text, told);
    told += ' ';
}

void AppendItem(const DataItem& item, std::string& told)
{
    for (const std::int64_t number :
         {std::int64_t{item.reserved0}, std::int64_t{item.dataLength}, static_cast<std::int64_t>(item.dataType),
          std::int64_t{item.integerDigits}, std::int64_t{item.decimalDigits}, static_cast<std::int64_t>(item.codeType),
          std::int64_t{item.isArray}, std::int64_t{item.reserved1}, std::int64_t{item.reserved2},
          std::int64_t{item.arrayLength}, item.minValue, item.maxValue, std::int64_t{item.unicode}})
        told += std::to_string(number) + ' ';
    AppendText({item.description.data(), item.description.size()}, told);
    told += '\n';
}

} // namespace

std::string Told(std::span<const UnsavedCell> cells)
{
    std::string told;
    for (const UnsavedCell& cell : cells) {
        told += std::to_string(cell.place.row) + ' ' + std::to_string(cell.place.column) + ' ';
        told += cell.state.IsUntouched() ? "untouched " : cell.state.IsText() ? "text " : "words ";
        AppendText(cell.state.Text(), told);
        for (const std::byte byte : cell.oldWords)
            told += std::to_string(std::to_integer<int>(byte)) + ' ';
        if (cell.oldText)
            AppendText(*cell.oldText, told);
        told += '\n';
    }
    return told;
}

std::string Told(const UnsavedWork& work)
{
    const WorkHeader& header = work.header;
    std::string told = UtcStamp(header.begun) + ' ' + header.file.string() + ' ' +
                       std::to_string(static_cast<int>(header.type)) + ' ' +
                       std::to_string(static_cast<int>(header.readAs)) + ' ' + std::to_string(header.startAddress) +
                       ' ' + std::to_string(header.rowCount) + ' ' + std::to_string(header.format.itemCount) + ' ';
    AppendText({header.format.name.data(), header.format.name.size()}, told);
    for (const auto& item : header.format.items)
        AppendItem(*item, told);
    return told + Told(work.cells);
}

std::vector<UnsavedCell> LastStates(std::span<const std::vector<UnsavedCell>> commands)
{
    std::map<CellPlace, UnsavedCell> last;
    for (const auto& command : commands)
        for (const UnsavedCell& cell : command)
            last.insert_or_assign(cell.place, cell);
    std::vector<UnsavedCell> cells;
    for (const auto& [place, cell] : last)
        if (!cell.state.IsUntouched())
            cells.push_back(cell);
    return cells;
}

fs::path OnlyJournal(const fs::path& folder)
{
    const auto journals = JournalsIn(folder);
    return journals.size() == 1 ? journals.front().path : fs::path();
}
