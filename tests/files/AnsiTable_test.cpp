#include "files/CsvRecipeFile.h"
#include "tests/files/TestColumns.h"
#include "tests/support/RecordingReporter.h"
#include "tests/support/TestFiles.h"
#include "text/AnsiText.h"

#include <gtest/gtest.h>

#include <cstdlib>

// Tables in the Simplified Chinese code page. It is settled once for the process, so these tests are a program of their
// own.

namespace {

class CChineseEnvironment final : public testing::Environment {
public:
    void SetUp() override { setenv("VANTOR_ANSI_CODEPAGE", "936", 1); }
};

const testing::Environment* const kEnvironment = testing::AddGlobalTestEnvironment(new CChineseEnvironment);

using Texts = std::vector<std::u16string>;

struct AnsiTable : testing::Test {
    Texts Read(const Bytes& bytes, std::size_t columns, std::int32_t rowCount)
    {
        const CTempFolder folder;
        WriteAll(folder / "a.csv", bytes);
        CRecordingReporter reporter;
        CNoProgress progress;
        CRecipeRows rows;
        rows.LayOut(std::vector<ColumnCoding>(columns, AnsiColumn(4)), 0, rowCount);
        EXPECT_EQ(ReadCsv(rows, folder / "a.csv", reporter, progress), Outcome::Done);
        return TextsOf(rows);
    }
};

TEST_F(AnsiTable, IsReadInTheCodePage)
{
    ASSERT_EQ(AnsiCodePage(), 936);
    EXPECT_EQ(Read(BytesOf({0xCE, 0xC2, 0xB6, 0xC8, ',', '7', '\r', '\n', 'a', ',', 0xCE, 0xC2}), 2, 2),
              (Texts{u"\u6E29\u5EA6", u"7", u"a", u"\u6E29"}));
}

TEST_F(AnsiTable, MarkByteWithinATextIsNone)
{
    EXPECT_EQ(Read(BytesOf({0xCE, 0xC2, 0xFE, 0x41, ',', '7'}), 2, 1), (Texts{u"\u6E29\uFA0D", u"7"}));
}

TEST_F(AnsiTable, CharacterCutByALongLineIsLost) // kept
{
    Bytes bytes(2046, std::byte{'x'});
    for (const std::byte byte : BytesOf({0xCE, 0xC2, '\n'}))
        bytes.push_back(byte);
    const Texts shown = Read(bytes, 1, 2);
    EXPECT_EQ(shown[0], std::u16string(2046, u'x') + u'\uFFFD');
    EXPECT_EQ(shown[1], u"\uFFFD");
}

} // namespace
