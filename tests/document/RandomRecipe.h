#pragma once

#include "document/RecipeDocument.h"
#include "files/PagedFile.h"
#include "files/PagedRecipeFile.h"
#include "tests/support/Formats.h"
#include "tests/support/RecordingReporter.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

/// The bytes of the file at `path`; of a paged one, of its logical content.
inline Bytes ContentOf(FileType type, const std::filesystem::path& path)
{
    if (!IsPaged(type))
        return ReadAll(path);
    Bytes bytes(LogicalBytes(type, path).value());
    CPagedReader file;
    EXPECT_TRUE(file.Open(path, KindOf(type)) && file.Read(WordAddress(0), bytes));
    return bytes;
}

/// A file of one type with random content, open in a document by a random format, and random edits of it.
class CRandomRecipe {
public:
    CRandomRecipe(unsigned seed, FileType type) : m_type(type), m_random(seed), m_path(m_folder / NameOf(type))
    {
        MakeFile();
        document.StartOpen(m_path, type);
        document.TakeSettings({RandomFormat(), m_start, m_rows});
        EXPECT_EQ(document.Read(type, reporter, progress), CRecipeDocument::Reading::Done);
    }

    /// A number from 0 up to, but without, `count`.
    int Below(int count) { return std::uniform_int_distribution<int>(0, count - 1)(m_random); }

    const std::filesystem::path& Path() const { return m_path; }
    std::int32_t Start() const { return m_start; }

    Bytes Content() const { return ContentOf(m_type, m_path); }

    CellPlace RandomPlace()
    {
        return {Below(document.Rows().RowCount()),
                static_cast<std::uint32_t>(Below(static_cast<int>(document.Rows().Columns().size())))};
    }

    std::u16string RandomText(const ColumnCoding& coding)
    {
        static const std::array<std::u16string, 10> texts{u"",   u"0",   u"1.15", u"-5",        u"12.345",
                                                          u"AB", u"1e3", u"7",    u"0.1234567", u"65535"};
        if (coding.dataType == DataType::String)
            return std::u16string(static_cast<std::size_t>(Below(6)), static_cast<char16_t>(u'a' + Below(26)));
        return texts[static_cast<std::size_t>(Below(10))];
    }

    /// One to three cells get texts, as one edit.
    void Edit()
    {
        std::vector<TextForCell> texts;
        for (int i = Below(3); i >= 0; --i) {
            const CellPlace place = RandomPlace();
            texts.push_back({place, RandomText(document.Rows().Columns()[place.column])});
        }
        EXPECT_EQ(document.SetTexts(EditKind::Typing, texts), EditOutcome::Made);
    }

    CRecordingReporter reporter;
    CNoProgress progress;
    CRecipeDocument document;

private:
    static const char* NameOf(FileType type)
    {
        static constexpr const char* kNames[] = {"a.rcp", "a.csv", "a.erp", "a.frp"};
        return kNames[static_cast<int>(type)];
    }

    void MakeFile()
    {
        m_rows = 1 + Below(12);
        m_start = Below(30);
        if (m_type == FileType::Csv)
            return MakeTable();
        if (IsPaged(m_type) && Below(2) == 0) // over the end of the flat part
            m_start = static_cast<std::int32_t>(FlatBytes(KindOf(m_type)) / 2) - Below(60);
        Bytes bytes(static_cast<std::size_t>(Below(500)));
        for (std::byte& byte : bytes)
            byte = RandomByte();
        if (!IsPaged(m_type))
            return WriteAll(m_path, bytes);
        WriteAll(m_path, {});
        bytes.resize(bytes.size() / 2 * 2);
        EXPECT_TRUE(PagedWrite(m_path, WordAddress(Below(m_start + 1)), bytes.size() / 2, bytes, KindOf(m_type)));
    }

    std::byte RandomByte()
    {
        switch (Below(4)) {
        case 0:
            return std::byte{0};
        case 1:
            return static_cast<std::byte>(Below(10));
        case 2:
            return static_cast<std::byte>(0x41 + Below(26));
        default:
            return static_cast<std::byte>(Below(256));
        }
    }

    /// Mostly as a save leaves it.
    void MakeTable()
    {
        static const std::array<std::u16string, 6> fields{u"5", u"1.50", u"AB", u"", u"0", u"-7"};
        std::u16string text;
        const int form = Below(4);
        for (int line = Below(14); line > 0; --line) {
            for (int field = Below(7); field >= 0; --field) {
                const std::u16string& value = fields[static_cast<std::size_t>(Below(6))];
                const bool isBare = (field == 0 && form != 1) || (form == 2 && Below(4) == 0);
                text += isBare ? value : u'"' + value + u'"';
                text += field == 0 ? u"" : u"\t";
            }
            text += form == 3 ? u"\n" : u"\r\n";
        }
        WriteAll(m_path, Utf16File(text));
    }

    DataItem RandomItem()
    {
        static constexpr std::array<int, 9> kWords{1, 2, 1, 2, 1, 2, 2, 4, 3};
        const int type = Below(9);
        const int words = kWords[static_cast<std::size_t>(type)];
        DataItem item = MakeItem(u"Item", static_cast<DataType>(type), words, 1 + Below(5), Below(3));
        item.codeType = Below(3) == 0 ? CodeType::Bcd : CodeType::Bin;
        item.unicode = Below(2);
        if (Below(10) == 0)
            item.dataLength += 1;
        return item;
    }

    DataFormat RandomFormat()
    {
        std::vector<DataItem> items;
        for (int i = Below(5); i >= 0; --i)
            items.push_back(RandomItem());
        return MakeFormat(u"Random", items);
    }

    FileType m_type;
    std::mt19937 m_random;
    CTempFolder m_folder;
    std::filesystem::path m_path;
    std::int32_t m_start = 0;
    std::int32_t m_rows = 0;
};
