#include "recovery/JournalSyntax.h"

#include "changes/WordsText.h"
#include "files/ShowLimits.h"
#include "files/StoredCells.h"
#include "files/TableTitles.h"
#include "library/LibraryFromJson.h"
#include "recovery/JournalLines.h"
#include "recovery/JsonCursor.h"
#include "text/Utf8Text.h"

#include <algorithm>
#include <limits>
#include <string>
#include <utility>

namespace fs = std::filesystem;

namespace {

using Int32Limits = std::numeric_limits<std::int32_t>;

bool TakeStamp(CJsonCursor& cursor, UtcTime& time)
{
    std::u16string text;
    if (!cursor.TakeText(text))
        return false;
    const auto stamp = TimeOfStamp(ToUtf8(text));
    time = stamp.value_or(UtcTime());
    return stamp.has_value();
}

bool TakeType(CJsonCursor& cursor, FileType& type)
{
    std::u16string word;
    if (!cursor.TakeText(word))
        return false;
    for (const FileType known : {FileType::Rcp, FileType::Csv, FileType::Erp, FileType::Frp})
        if (ToUtf8(word) == WordOf(known)) {
            type = known;
            return true;
        }
    return false;
}

bool TakeWords(CJsonCursor& cursor, WordRun& words)
{
    std::u16string text;
    auto taken = cursor.TakeText(text) ? WordsFromText(text) : std::nullopt;
    if (!taken)
        return false;
    words = *std::move(taken);
    return true;
}

/// The name as the platform writes it; `bytes`, where there are any, are what it is made of.
template <class Name>
Name NameOf(const std::u16string& text, const WordRun& bytes)
{
    using Unit = typename Name::value_type;
    if constexpr (sizeof(Unit) != 1) {
        return Name(text.begin(), text.end());
    } else {
        if (bytes.empty())
            return Name(ToUtf8(text));
        Name name(bytes.size(), Unit());
        std::transform(bytes.begin(), bytes.end(), name.begin(), [](std::byte b) { return static_cast<Unit>(b); });
        return name;
    }
}

bool TakeFile(CJsonCursor& cursor, fs::path& file)
{
    std::u16string text;
    if (!cursor.TakeText(text))
        return false;
    WordRun bytes;
    if (cursor.Take(R"(,"fileBytes":)") && !TakeWords(cursor, bytes))
        return false;
    file = NameOf<fs::path::string_type>(text, bytes);
    return true;
}

/// The rest of the header, up to the brace that ends it.
bool TakeLayout(std::string_view rest, WorkHeader& header)
{
    FormatLibrary library;
    if (!rest.ends_with('}') || LibraryFromJson(rest.substr(0, rest.size() - 1), library) ||
        library.formats.size() != 1 || ShowFault(*library.formats.front(), library.rowCount))
        return false;
    header.format = std::move(*library.formats.front());
    header.startAddress = library.startAddress;
    header.rowCount = library.rowCount;
    return true;
}

bool TakeFields(CJsonCursor& cursor, WorkHeader& header)
{
    if (!cursor.Take(R"(,"begun":)") || !TakeStamp(cursor, header.begun) || !cursor.Take(R"(,"file":)") ||
        !TakeFile(cursor, header.file) || !cursor.Take(R"(,"type":)") || !TakeType(cursor, header.type) ||
        !cursor.Take(R"(,"readAs":)") || !TakeType(cursor, header.readAs))
        return false;
    std::int64_t itemCount = 0;
    const bool hasItemCount = cursor.Take(R"(,"itemCount":)");
    if (hasItemCount && !cursor.TakeNumber(Int32Limits::min(), Int32Limits::max(), itemCount))
        return false;
    if (!cursor.Take(R"(,"layout":)") || !TakeLayout(cursor.Rest(), header))
        return false;
    if (hasItemCount)
        header.format.itemCount = static_cast<std::int32_t>(itemCount);
    return true;
}

/// What a cell may hold.
struct CellRules {
    std::size_t bytes;
    bool isOfWords;
    bool takesWords;
};

bool TakeOld(CJsonCursor& cursor, const CellRules& rules, UnsavedCell& cell)
{
    if (rules.isOfWords)
        return TakeWords(cursor, cell.oldWords) && cell.oldWords.size() <= rules.bytes;
    if (cursor.Take("null"))
        return true;
    return cursor.Take(R"({"text":)") && cursor.TakeText(cell.oldText.emplace()) && cursor.Take("}");
}

bool TakeState(CJsonCursor& cursor, const CellRules& rules, CCellState& state)
{
    if (cursor.Take("null"))
        return true;
    if (!cursor.Take(R"({"words":)")) {
        std::u16string text;
        const bool isTaken = cursor.TakeText(text);
        state = CCellState::OfText(std::move(text));
        return isTaken;
    }
    WordRun words;
    if (!TakeWords(cursor, words) || !cursor.Take("}") || words.size() != rules.bytes || !rules.takesWords)
        return false;
    state = CCellState::OfWords(WordsOf(words));
    return true;
}

} // namespace

HeaderReading HeaderFromJson(std::string_view json, WorkHeader& header)
{
    CJsonCursor cursor(json);
    std::int64_t version = 0;
    if (!cursor.Take(kJournalStart) || !cursor.TakeNumber(1, Int32Limits::max(), version))
        return HeaderReading::Wrong;
    if (version != kJournalVersion)
        return HeaderReading::Later;
    return TakeFields(cursor, header) ? HeaderReading::Done : HeaderReading::Wrong;
}

CCommandReader::CCommandReader(const WorkHeader& header)
    : m_rowCount(header.rowCount),
      m_isOfWords(HasFileOfWords(header)),
      m_takesWords(header.file.empty() || header.readAs != FileType::Csv)
{
    for (const ColumnCoding& column : LayOutColumns(header.format))
        m_lengths.push_back(column.dataLength);
}

bool CCommandReader::Read(std::string_view json, UtcTime& time, std::vector<UnsavedCell>& cells) const
{
    cells.clear();
    CJsonCursor cursor(json);
    if (!cursor.Take(R"({"time":)") || !TakeStamp(cursor, time) || !cursor.Take(R"(,"cells":[)"))
        return false;
    do {
        UnsavedCell& cell = cells.emplace_back();
        std::int64_t row = 0;
        std::int64_t column = 0;
        if (!cursor.Take("[") || !cursor.TakeNumber(kTitleRows, kTitleRows + std::int64_t{m_rowCount} - 1, row) ||
            !cursor.Take(",") || !cursor.TakeNumber(kTitleColumns, kTitleColumns + std::ssize(m_lengths) - 1, column) ||
            !cursor.Take(","))
            return false;
        cell.place = {static_cast<std::int32_t>(row - kTitleRows), static_cast<std::uint32_t>(column - kTitleColumns)};
        const CellRules rules{2 * static_cast<std::size_t>(m_lengths[cell.place.column]), m_isOfWords, m_takesWords};
        if (!TakeOld(cursor, rules, cell) || !cursor.Take(",") || !TakeState(cursor, rules, cell.state) ||
            !cursor.Take("]"))
            return false;
    } while (cursor.Take(","));
    return cursor.Rest() == "]}";
}
