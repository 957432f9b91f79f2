#include "changes/ChangeLines.h"
#include "text/Utf8Text.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

constexpr char kHeader[] = "{\"vantor\":\"changes\",\"version\":1}\n";

/// What a reader makes of `lines`: its records as lines, and then the end or the fault.
std::string ReadBack(CChangeReader& reader)
{
    std::string text;
    const auto header = reader.ReadHeader();
    if (const auto* fault = std::get_if<ChangeFault>(&header))
        return ToUtf8(FaultText(*fault));
    for (;;) {
        const auto next = reader.Next();
        if (const auto* fault = std::get_if<ChangeFault>(&next))
            return text + ToUtf8(FaultText(*fault));
        if (std::holds_alternative<EndOfChanges>(next))
            return text + "end";
        AppendLine(std::get<ChangeRecord>(next), text);
    }
}

std::string ReadBack(const std::string& lines)
{
    std::istringstream input(lines);
    CChangeReader reader(input);
    return ReadBack(reader);
}

constexpr char kForm[] = "{\"why\":\"form\"}\n";
constexpr char kZeros[] = "{\"address\":1,\"zeros\":2}\n";

TEST(ChangeReader, GivesHeaderAndRecordsInTheirOrder)
{
    std::istringstream input(std::string("{\"vantor\":\"changes\",\"version\":1,\"file\":\"a\"}\n") + kZeros + kForm);
    CChangeReader reader(input);
    const auto header = reader.ReadHeader();
    ASSERT_TRUE(std::holds_alternative<ChangeHeader>(header));
    EXPECT_EQ(std::get<ChangeHeader>(header).file, u"a");
    const auto first = reader.Next();
    ASSERT_TRUE(std::holds_alternative<ChangeRecord>(first));
    EXPECT_EQ(std::get<ChangeRecord>(first).zeros, 2);
    const auto second = reader.Next();
    ASSERT_TRUE(std::holds_alternative<ChangeRecord>(second));
    EXPECT_EQ(std::get<ChangeRecord>(second).why, ChangeReason::Form);
    EXPECT_TRUE(std::holds_alternative<EndOfChanges>(reader.Next()));
    EXPECT_TRUE(std::holds_alternative<EndOfChanges>(reader.Next()));
}

TEST(ChangeReader, AHeaderAloneIsGood)
{
    EXPECT_EQ(ReadBack(kHeader), "end");
}

TEST(ChangeReader, AnInputWithoutLinesHasNoHeader)
{
    for (const char* lines : {"", "\n", " \t\r\n\n", "\xEF\xBB\xBF", "\xEF\xBB\xBF\r\n"})
        EXPECT_EQ(ReadBack(lines), "line 1: there is no header") << lines;
}

TEST(ChangeReader, TakesALastLineWithoutItsEnd)
{
    EXPECT_EQ(ReadBack(std::string(kHeader) + R"({"why":"form"})"), std::string(kForm) + "end");
}

TEST(ChangeReader, TakesLinesFromWindows)
{
    EXPECT_EQ(ReadBack("\xEF\xBB\xBF{\"vantor\":\"changes\",\"version\":1}\r\n{\"why\":\"form\"}\r\n"),
              std::string(kForm) + "end");
}

TEST(ChangeReader, TakesAByteOrderMarkOnlyAtTheBeginning)
{
    EXPECT_EQ(ReadBack(std::string(kHeader) + "\xEF\xBB\xBF" + kForm), "line 2: column 1 is no valid JSON");
    EXPECT_EQ(ReadBack(std::string("\xEF\xBB\xBF\xEF\xBB\xBF") + kHeader), "line 1: column 1 is no valid JSON");
    EXPECT_EQ(ReadBack(std::string("{\"vantor\":\"changes\",\"version\":1}") + '\0' + "rest\n"),
              "line 1: column 33 is no valid JSON");
}

TEST(ChangeReader, LeavesBlankLinesOutButCountsThem)
{
    EXPECT_EQ(ReadBack("\n" + std::string(kHeader) + " \t\r\n\n" + kForm + "\n{}\n"),
              std::string(kForm) + "line 7: an address, a row with a column or an item, or a line is missing");
}

TEST(ChangeReader, TakesNoHeaderFromALaterLine)
{
    EXPECT_EQ(ReadBack(kForm), "line 1, \"why\": it belongs to a record, and the first line is the header");
    EXPECT_EQ(ReadBack(std::string(kHeader) + kHeader),
              "line 2, \"vantor\": it belongs to the header, which is the first line");
}

TEST(ChangeReader, TakesNoTextIn16BitUnits)
{
    EXPECT_EQ(ReadBack(std::string("\xFF\xFE{\0\"\0", 6)), "line 1: column 1 is no valid JSON");
}

TEST(ChangeReader, ReadsNoFurtherAfterAFault)
{
    std::istringstream input(std::string(kHeader) + "{\"row\":-1}\n" + kForm);
    CChangeReader reader(input);
    reader.ReadHeader();
    for (int i = 0; i < 3; ++i) {
        const auto next = reader.Next();
        ASSERT_TRUE(std::holds_alternative<ChangeFault>(next));
        EXPECT_EQ(std::get<ChangeFault>(next).line, 2u);
        EXPECT_EQ(std::get<ChangeFault>(next).key, u"row");
    }
}

TEST(ChangeReader, ReadsNoRecordsAfterAFaultyHeader)
{
    std::istringstream input(std::string("{}\n") + kForm);
    CChangeReader reader(input);
    reader.ReadHeader();
    EXPECT_TRUE(std::holds_alternative<ChangeFault>(reader.Next()));
}

/// A record of `bytes` bytes, without its line feed.
std::string RecordOfBytes(std::size_t bytes)
{
    const std::string begin = R"({"address":1,"new":")";
    return begin + std::string(bytes - begin.size() - 2, 'x') + "\"}";
}

TEST(ChangeReader, TakesALineOf16MebibytesAndNoLongerOne)
{
    const std::string longest = RecordOfBytes(kMostLineBytes);
    EXPECT_TRUE(ReadBack(kHeader + longest + "\n" + kForm) == longest + "\n" + kForm + "end");
    EXPECT_EQ(ReadBack(kHeader + RecordOfBytes(kMostLineBytes + 1) + "\n" + kForm),
              "line 2: the line is longer than 16 MiB");
    EXPECT_EQ(ReadBack(std::string(kMostLineBytes + 1, ' ')), "line 1: the line is longer than 16 MiB");
}

/// Bytes without end, counted.
class CEndless : public std::streambuf {
public:
    std::size_t given = 0;

protected:
    int_type underflow() override
    {
        given += sizeof m_bytes;
        std::fill(std::begin(m_bytes), std::end(m_bytes), 'x');
        setg(m_bytes, m_bytes, m_bytes + sizeof m_bytes);
        return traits_type::to_int_type(m_bytes[0]);
    }

private:
    char m_bytes[4096];
};

TEST(ChangeReader, DoesNotKeepALineWithoutEnd)
{
    CEndless endless;
    std::istream input(&endless);
    CChangeReader reader(input);
    EXPECT_EQ(ReadBack(reader), "line 1: the line is longer than 16 MiB");
    EXPECT_LT(endless.given, kMostLineBytes + (1 << 20));
}

TEST(ChangeReader, FindsLinesWhereverAPieceEnds)
{
    for (const std::size_t padding : {65530U, 65534U, 65535U, 65536U, 65537U, 131070U, 131072U}) {
        const std::string lines = RecordOfBytes(padding - sizeof kHeader + 1) + "\n" + kZeros;
        EXPECT_EQ(ReadBack(kHeader + lines), lines + "end") << padding;
    }
}

/// Fails as a disk does.
class CBrokenInput : public std::streambuf {
protected:
    int_type underflow() override { throw std::runtime_error("broken"); }
};

TEST(ChangeReader, TellsThatItsInputFails)
{
    CBrokenInput broken;
    std::istream input(&broken);
    CChangeReader reader(input);
    EXPECT_EQ(ReadBack(reader), "line 1: it cannot be read");
}

} // namespace
