#pragma once

#include "files/PagedFile.h"
#include "files/RecipeFile.h"
#include "tests/files/TestColumns.h"
#include "tests/support/RecordingReporter.h"
#include "tests/support/TestFiles.h"
#include "text/PathText.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <initializer_list>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// A recipe file of each of the four types, with the same cells in it.

inline constexpr std::int32_t kRows = 4;
inline constexpr std::size_t kColumns = 6;
inline constexpr std::int32_t kWordsAround = 3; // before and after the rows, which no save may touch

/// A type, and the words that it has for its failures.
struct RecipeType {
    const char* name;
    FileType type;
    std::int32_t startAddress; ///< so that a paged file's rows lie in its flat part and in a page
    const char* extension;
    std::u16string_view beforeOpened;
    std::u16string_view afterOpened;
    std::u16string_view beforeSaved;
    std::u16string_view afterSaved;

    bool IsTable() const { return type == FileType::Csv; }

    friend void PrintTo(const RecipeType& one, std::ostream* out) { *out << one.name; }
};

inline constexpr std::u16string_view kOpen = u"Open file ";
inline constexpr std::u16string_view kError = u" error!";
inline constexpr std::u16string_view kCannotSave = u"Can't save file ";
inline constexpr std::u16string_view kCheckDisk = u",please check file or your disk!";

// clang-format off
inline const RecipeType kTypes[] = {
    {"Rcp", FileType::Rcp,      5, ".rcp", kOpen,               kError, kCannotSave,   kCheckDisk},
    {"Csv", FileType::Csv,      5, ".csv", u"Can't open file ", u"!",   u"Save file ", u" failed!"},
    {"Erp", FileType::Erp, 524278, ".erp", kOpen,               kError, kCannotSave,   kCheckDisk},
    {"Frp", FileType::Frp,  32758, ".frp", kOpen,               kError, kCannotSave,   kCheckDisk}};

/// A row of 10 words in each: what the file holds, and what it shows.
inline const std::vector<std::vector<std::uint16_t>> kWords = {
    {0xFFFE, 0xAB00, 0x86A0, 1, 0, 0x3FC0, 0x4241, 0,      0,  0},
    {0xFFFF, 0xAB01, 0x86A1, 1, 0, 0x4020, 0x4443, 0x0045, 0, 10},
    {     0,      0,      0, 0, 0,      0,      0,      0, 0,  0},
    {  1234, 0x00FF, 0xFFFF, 0, 0, 0xC090, 0x2020, 0x5A59, 0, 30}};
inline const std::vector<std::u16string> kTexts = {
    u"-2",   u"AB00", u"100000", u"1.5",  u"AB",     u"0",
    u"-1",   u"AB01", u"100001", u"2.5",  u"CDE",    u"10",
    u"0",    u"0",    u"0",      u"0.0",  u"",       u"0",
    u"1234", u"FF",   u"65535",  u"-4.5", u"  YZ",   u"30"};
// clang-format on

inline std::vector<ColumnCoding> Columns()
{
    return {Signed16Column(), Hex16Column(), Unsigned32Column(), FloatColumn(), AnsiColumn(3), Signed16Column()};
}

inline Bytes RowBytes(const std::vector<std::vector<std::uint16_t>>& rows)
{
    Bytes bytes;
    for (const auto& row : rows)
        for (const std::uint16_t word : row) {
            bytes.push_back(static_cast<std::byte>(word & 0xFF));
            bytes.push_back(static_cast<std::byte>(word >> 8));
        }
    return bytes;
}

inline Bytes Joined(std::initializer_list<Bytes> parts)
{
    Bytes all;
    for (const Bytes& part : parts)
        all.insert(all.end(), part.begin(), part.end());
    return all;
}

inline const Bytes kAround(2 * kWordsAround, std::byte{0xE5});

/// The table that shows `texts`; in one that we write, the last field of a line is quoted, too.
inline Bytes TableFile(const std::vector<std::u16string>& texts, bool isLastQuoted)
{
    std::u16string text;
    for (std::size_t i = 0; i < texts.size(); ++i) {
        const bool isLast = i % kColumns == kColumns - 1;
        const std::u16string_view quote = !isLast || isLastQuoted ? u"\"" : u"";
        text += std::u16string(quote) + texts[i] + std::u16string(quote) + (isLast ? u"\r\n" : u"\t");
    }
    return Utf16File(text);
}

/// What a saved file shows of `texts`. kept: in a table the last field of a line keeps its quotes.
inline std::vector<std::u16string> ReadBack(const RecipeType& type, std::vector<std::u16string> texts)
{
    for (std::size_t i = kColumns - 1; type.IsTable() && i < texts.size(); i += kColumns)
        texts[i] = u'"' + texts[i] + u'"';
    return texts;
}

/// A file of one type in a folder of its own, and rows to read it into.
struct OneType {
    const RecipeType& type;
    CTempFolder folder;
    std::filesystem::path path;
    CRecipeRows rows;
    CRecordingReporter reporter;
    CNoProgress progress;

    explicit OneType(const RecipeType& given) : type(given), path(folder / (std::string("a") + given.extension))
    {
        LayOut(rows);
    }

    void LayOut(CRecipeRows& laidOut, std::int32_t rowCount = kRows) const
    {
        laidOut.LayOut(Columns(), type.startAddress, rowCount);
    }

    /// Writes the file as another program might have.
    void MakeFile()
    {
        if (type.IsTable())
            return WriteAll(path, TableFile(kTexts, false));
        const Bytes words = Joined({kAround, RowBytes(kWords), kAround});
        const std::int32_t begin = type.startAddress - kWordsAround;
        if (!IsPaged(type.type))
            return WriteAll(path, Joined({Bytes(2 * static_cast<std::size_t>(begin), std::byte{1}), words}));
        WriteAll(path, {});
        ASSERT_TRUE(PagedWrite(path, WordAddress(begin), words.size() / 2, words, Kind()));
    }

    void MakeAndRead()
    {
        MakeFile();
        ASSERT_EQ(Read(rows), Outcome::Done);
        ASSERT_EQ(TextsOf(rows), kTexts);
    }

    Outcome Read(CRecipeRows& into) { return ReadRecipe(type.type, into, path, false, reporter, progress); }
    SaveResult Save() { return SaveRecipe(type.type, rows, path, reporter, progress); }

    /// What the file shows to whoever opens it.
    std::vector<std::u16string> TextsInFile()
    {
        CRecipeRows fresh;
        LayOut(fresh, rows.RowCount());
        EXPECT_EQ(Read(fresh), Outcome::Done);
        return TextsOf(fresh);
    }

    /// Of a file of words, the rows and those around them; of a table all of it.
    Bytes BytesInFile()
    {
        if (type.IsTable())
            return ReadAll(path);
        const std::size_t size = RowBytes(kWords).size() + 2 * kAround.size();
        const std::int32_t begin = type.startAddress - kWordsAround;
        if (IsPaged(type.type)) {
            Bytes bytes(size);
            EXPECT_TRUE(PagedRead(path, WordAddress(begin), size / 2, bytes, Kind()));
            return bytes;
        }
        const Bytes all = ReadAll(path);
        const Bytes head(all.begin(), all.begin() + 2 * begin);
        EXPECT_EQ(head, Bytes(head.size(), std::byte{1}));
        return Bytes(all.begin() + 2 * begin, all.end());
    }

    PagedKind Kind() const { return type.type == FileType::Erp ? kErp : kFrp; }

    /// Gives cells of every type a text, one by one and by an exchange; returns what all cells show then.
    std::vector<std::u16string> Edit()
    {
        std::vector<std::u16string> shown = kTexts;
        const std::vector<std::pair<CellPlace, std::u16string>> edits = {
            {{0, 0}, u"-32768"}, {{0, 1}, u"BEEF"}, {{0, 2}, u"99"},    {{1, 3}, u"-8.5"},
            {{1, 4}, u"abcdef"}, {{2, 5}, u"77"},   {{3, 0}, u"32767"}, {{3, 4}, u""}};
        std::vector<CellEdit> exchanged;
        for (const auto& [place, text] : edits) {
            shown[static_cast<std::size_t>(place.row) * kColumns + place.column] = text;
            if (place.row < 2)
                EXPECT_TRUE(rows.SetText(place.row, place.column, text));
            else
                exchanged.push_back({place, CCellState::OfText(text)});
        }
        rows.Exchange(exchanged);
        EXPECT_EQ(TextsOf(rows), shown);
        EXPECT_EQ(rows.EditedCount(), edits.size());
        return shown;
    }

    std::u16string OpenError() const { return Message(type.beforeOpened, type.afterOpened); }
    std::u16string SaveError() const { return Message(type.beforeSaved, type.afterSaved); }

private:
    std::u16string Message(std::u16string_view before, std::u16string_view after) const
    {
        return std::u16string(before) + PathText(path) + std::u16string(after);
    }
};
