#include "recovery/JournalLines.h"

#include "changes/WordsText.h"
#include "disk/Crc32.h"
#include "files/TableTitles.h"
#include "library/JsonText.h"
#include "library/LibraryToJson.h"
#include "text/Utf8Text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <memory>

namespace {

constexpr std::size_t kMostDigits = 20; // of a number, with its sign

void AppendNumber(std::int64_t number, std::string& json)
{
    std::array<char, kMostDigits> digits;
    json.append(digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr);
}

/// Whether JSON and UTF-8 have the unit as it is.
bool IsPlain(char16_t unit)
{
    return unit >= u' ' && unit < 0x7F && unit != u'"' && unit != u'\\';
}

/// What is typed into cells is mostly plain, and there may be a million of it.
void AppendText(std::u16string_view text, std::string& json)
{
    if (!std::all_of(text.begin(), text.end(), IsPlain))
        return AppendWholeJsonText(text, json);
    const std::size_t begin = json.size() + 1;
    json.resize(begin + text.size() + 1, '"');
    json[begin - 1] = '"';
    std::transform(text.begin(), text.end(), json.begin() + static_cast<std::ptrdiff_t>(begin),
                   [](char16_t unit) { return static_cast<char>(unit); });
}

void AppendWords(std::span<const std::byte> words, std::string& json)
{
    json += '"';
    AppendWordsText(words, json);
    json += '"';
}

void AppendOld(const UnsavedCell& cell, bool isOfWords, std::string& json)
{
    if (isOfWords)
        return AppendWords(cell.oldWords, json);
    if (!cell.oldText) {
        json += "null";
        return;
    }
    json += R"({"text":)";
    AppendText(*cell.oldText, json);
    json += '}';
}

void AppendState(const CCellState& state, std::string& json)
{
    if (state.IsUntouched()) {
        json += "null";
    } else if (state.IsText()) {
        AppendText(state.Text(), json);
    } else {
        WordRun words;
        for (const char16_t word : state.Words())
            words.insert(words.end(), {static_cast<std::byte>(word), static_cast<std::byte>(word >> 8)});
        json += R"({"words":)";
        AppendWords(words, json);
        json += '}';
    }
}

/// The beginning of a cell in one piece, for the same reason.
void AppendPlace(CellPlace place, std::string& json)
{
    std::array<char, 2 * kMostDigits + 3> text;
    char* end = text.data();
    *end++ = '[';
    end = std::to_chars(end, text.data() + 1 + kMostDigits, std::int64_t{place.row} + kTitleRows).ptr;
    *end++ = ',';
    end = std::to_chars(end, text.data() + 2 + 2 * kMostDigits, std::int64_t{place.column} + kTitleColumns).ptr;
    *end++ = ',';
    json.append(text.data(), end);
}

/// A name that is no text stands there as its bytes, too.
template <class Unit>
void AppendName(const std::basic_string<Unit>& name, std::string& json)
{
    if constexpr (sizeof(Unit) == 1) {
        const std::u16string text = FromUtf8(name);
        AppendText(text, json);
        if (ToUtf8(text) == name)
            return;
        json += R"(,"fileBytes":)";
        AppendWords(std::as_bytes(std::span(name)), json);
    } else {
        AppendText(std::u16string(name.begin(), name.end()), json);
    }
}

/// As the formats of a library are written, on one line; with all items, since all of them lay out rows.
void AppendLayout(const WorkHeader& header, std::string& json)
{
    FormatLibrary library;
    library.startAddress = header.startAddress;
    library.rowCount = header.rowCount;
    library.formats.push_back(std::make_unique<DataFormat>(header.format));
    library.formats.back()->itemCount = static_cast<std::int32_t>(header.format.items.size());
    std::string layout = LibraryToJson(library);
    layout.pop_back(); // the line feed at the end; within a text there is none
    std::replace(layout.begin(), layout.end(), '\n', ' ');
    json += layout;
}

} // namespace

std::string_view WordOf(FileType type)
{
    switch (type) {
    case FileType::Csv:
        return "csv";
    case FileType::Erp:
        return "erp";
    case FileType::Frp:
        return "frp";
    case FileType::Rcp:
        break;
    }
    return "rcp";
}

void AppendHeaderJson(const WorkHeader& header, std::string& json)
{
    json += kJournalStart;
    AppendNumber(kJournalVersion, json);
    json.append(R"(,"begun":")").append(UtcStamp(header.begun)).append(R"(","file":)");
    AppendName(header.file.native(), json);
    json.append(R"(,"type":")").append(WordOf(header.type));
    json.append(R"(","readAs":")").append(WordOf(header.readAs)).append("\"");
    if (header.format.itemCount != static_cast<std::int64_t>(header.format.items.size())) {
        json += R"(,"itemCount":)";
        AppendNumber(header.format.itemCount, json);
    }
    json += R"(,"layout":)";
    AppendLayout(header, json);
    json += '}';
}

void AppendCellJson(const UnsavedCell& cell, bool isOfWords, std::string& json)
{
    AppendPlace(cell.place, json);
    AppendOld(cell, isOfWords, json);
    json += ',';
    AppendState(cell.state, json);
    json += ']';
}

std::uint32_t ChecksumOf(std::string_view json, std::uint32_t before)
{
    return Crc32(std::as_bytes(std::span(json)), before);
}

void PutChecksum(std::uint32_t checksum, std::string& line)
{
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    for (std::size_t i = 0; i < kChecksumDigits; ++i)
        line[i] = kDigits[(checksum >> (4 * (kChecksumDigits - 1 - i))) & 0xF];
    line[kChecksumDigits] = ' ';
}
