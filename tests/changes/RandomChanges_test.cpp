#include "changes/ChangeLines.h"
#include "text/Utf8Text.h"

#include <gtest/gtest.h>

#include <random>
#include <sstream>

// Records with anything in them are read as they were written; lines with anything in them are read or refused.

namespace {

class CRandomChanges {
public:
    explicit CRandomChanges(unsigned seed) : m_random(seed) {}

    std::int64_t Number(std::int64_t least, std::int64_t most)
    {
        return std::uniform_int_distribution<std::int64_t>(least, most)(m_random);
    }

    bool Flag() { return Number(0, 1) == 1; }

    ChangeHeader Header()
    {
        ChangeHeader header;
        Set(header.file, [&] { return Text(); });
        Set(header.type, [&] { return static_cast<FileType>(Number(0, 3)); });
        Set(header.bytes, [&] { return Size(kMost); });
        Set(header.newBytes, [&] { return Size(kMost); });
        for (std::int64_t i = Number(0, 3); i > 0; --i)
            header.tables.push_back(
                {Text(), WordAddress(Size(kMostAddress)), static_cast<std::int32_t>(Size(kMost32))});
        return header;
    }

    ChangeRecord Record()
    {
        switch (Number(0, 9)) {
        case 0:
            return Zeros();
        case 1:
            return Line();
        case 2:
            return Form();
        default:
            return Cell();
        }
    }

    /// The line with a few bytes changed, left out, doubled or put in.
    std::string Mutated(std::string line)
    {
        for (std::int64_t i = Number(1, 2); i > 0 && !line.empty(); --i)
            Mutate(line, static_cast<std::size_t>(Number(0, static_cast<std::int64_t>(line.size()) - 1)));
        return line;
    }

private:
    static constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
    static constexpr std::int64_t kMostAddress = kMost / 2;
    static constexpr std::int64_t kMost32 = std::numeric_limits<std::int32_t>::max();

    template <class Value, class Make>
    void Set(std::optional<Value>& value, Make make)
    {
        if (Flag())
            value = make();
    }

    /// 0 to `most`: often small, sometimes the most.
    std::int64_t Size(std::int64_t most)
    {
        const std::int64_t kind = Number(0, 9);
        return kind == 0 ? most : Number(0, kind < 5 ? std::min<std::int64_t>(most, 2000) : most);
    }

    std::u16string Text()
    {
        std::u16string text(static_cast<std::size_t>(Number(0, 12)), u'\0');
        for (char16_t& unit : text) {
            constexpr std::array<std::pair<int, int>, 5> kKinds{
                {{0, 0x1F}, {0x20, 0x7F}, {0xD800, 0xDFFF}, {0, 0xFFFF}, {0, 0}}};
            const auto [least, most] = kKinds[static_cast<std::size_t>(Number(0, 4))];
            unit = static_cast<char16_t>(Number(least, most));
        }
        return text;
    }

    WordRun Words()
    {
        WordRun words(static_cast<std::size_t>(Number(0, 9)));
        for (std::byte& byte : words)
            byte = static_cast<std::byte>(Number(0, 255));
        return words;
    }

    void SetTexts(ChangeRecord& record)
    {
        Set(record.oldText, [&] { return Text(); });
        Set(record.newText, [&] { return Text(); });
        Set(record.reads, [&] { return Text(); });
    }

    void SetReason(ChangeRecord& record)
    {
        Set(record.why, [&] { return static_cast<ChangeReason>(Number(0, 10)); });
    }

    ChangeRecord Cell()
    {
        ChangeRecord record;
        Set(record.address, [&] { return WordAddress(Size(kMostAddress)); });
        record.table = Flag() ? static_cast<std::int32_t>(Size(kMost32)) : 0;
        Set(record.row, [&] { return static_cast<std::int32_t>(std::max<std::int64_t>(Size(kMost32), 1)); });
        Set(record.column, [&] { return static_cast<std::int32_t>(std::max<std::int64_t>(Size(kMost32), 2)); });
        Set(record.item, [&] { return Text(); });
        if (!record.address && !(record.row && (record.column || record.item)))
            record.address = WordAddress(Size(kMostAddress));
        SetTexts(record);
        if (Flag()) {
            record.oldWords = Words();
            record.newWords = Words();
        }
        if (record.oldWords.empty() && record.newWords.empty())
            record.newText = Text();
        SetReason(record);
        return record;
    }

    ChangeRecord Zeros()
    {
        ChangeRecord record;
        record.address = WordAddress(Size(kMostAddress));
        record.zeros = std::max<std::int64_t>(Size(kMostAddress), 1) * (Flag() ? 1 : -1);
        SetReason(record);
        return record;
    }

    ChangeRecord Line()
    {
        ChangeRecord record;
        record.line = std::max<std::int64_t>(Size(kMost), 1);
        SetTexts(record);
        record.oldText = Text();
        SetReason(record);
        return record;
    }

    ChangeRecord Form()
    {
        ChangeRecord record;
        record.why = ChangeReason::Form;
        return record;
    }

    void Mutate(std::string& line, std::size_t at)
    {
        constexpr std::string_view kSyntax = "{}[]:,\"\\ 0123456789-+.eEuUdDcC\n\r\t";
        const auto byte = [&] {
            return Flag() ? kSyntax[static_cast<std::size_t>(Number(0, kSyntax.size() - 1))]
                          : static_cast<char>(Number(0, 255));
        };
        switch (Number(0, 4)) {
        case 0:
            line[at] = byte();
            return;
        case 1:
            line.erase(at, static_cast<std::size_t>(Number(1, 6)));
            return;
        case 2:
            line.insert(at, 1, byte());
            return;
        case 3:
            line.insert(at, line.substr(at / 2, static_cast<std::size_t>(Number(1, 20))));
            return;
        default:
            line.insert(at, "\\ud8");
        }
    }

    std::mt19937 m_random;
};

constexpr unsigned kSeed = 20240517;

TEST(RandomChanges, AreReadAsTheyWereWritten)
{
    constexpr int kRecords = 20000;
    CRandomChanges random(kSeed);
    const ChangeHeader header = random.Header();
    std::vector<ChangeRecord> records;
    std::string lines;
    AppendLine(header, lines);
    for (int i = 0; i < kRecords; ++i) {
        records.push_back(random.Record());
        AppendLine(records.back(), lines);
    }
    std::istringstream input(lines);
    CChangeReader reader(input);
    const auto readHeader = reader.ReadHeader();
    ASSERT_TRUE(std::holds_alternative<ChangeHeader>(readHeader));
    EXPECT_EQ(std::get<ChangeHeader>(readHeader), header);
    for (const ChangeRecord& record : records) {
        const auto read = reader.Next();
        if (const auto* fault = std::get_if<ChangeFault>(&read))
            FAIL() << ToUtf8(FaultText(*fault));
        ASSERT_TRUE(std::holds_alternative<ChangeRecord>(read));
        ASSERT_EQ(std::get<ChangeRecord>(read), record);
    }
    EXPECT_TRUE(std::holds_alternative<EndOfChanges>(reader.Next()));
}

TEST(RandomChanges, HaveHeadersThatAreReadAsTheyWereWritten)
{
    CRandomChanges random(kSeed);
    for (int i = 0; i < 2000; ++i) {
        const ChangeHeader header = random.Header();
        std::string line;
        AppendLine(header, line);
        ChangeHeader read;
        ASSERT_FALSE(HeaderFromLine(line, read)) << line;
        ASSERT_EQ(read, header);
    }
}

TEST(RandomChanges, HoldOneLineEach)
{
    CRandomChanges random(kSeed);
    for (int i = 0; i < 2000; ++i) {
        std::string line;
        AppendLine(random.Record(), line);
        EXPECT_EQ(line.find_first_of(std::string_view("\0\n\r\t", 4)), line.size() - 1);
        EXPECT_EQ(ToUtf8(FromUtf8(line)), line);
    }
}

/// Whether `read` takes the line. What is taken is written and read once more as it was; what is refused says why.
template <class Value, class Read>
bool IsTaken(const std::string& line, Read read)
{
    Value value;
    if (const auto fault = read(line, value)) {
        EXPECT_FALSE(fault->text.empty());
        return false;
    }
    std::string written;
    AppendLine(value, written);
    Value again;
    EXPECT_FALSE(read(written, again)) << written;
    EXPECT_EQ(again, value) << written;
    return true;
}

TEST(RandomChanges, DamagedLinesAreTakenOrRefused)
{
    constexpr int kLines = 20000;
    CRandomChanges random(kSeed);
    int taken = 0;
    for (int i = 0; i < kLines && !HasFailure(); ++i) {
        std::string line;
        if (i % 10 == 0)
            AppendLine(random.Header(), line);
        else
            AppendLine(random.Record(), line);
        line = random.Mutated(std::move(line));
        EXPECT_NO_THROW({
            taken += IsTaken<ChangeHeader>(line, HeaderFromLine);
            taken += IsTaken<ChangeRecord>(line, ChangeFromLine);
        }) << line;
    }
    EXPECT_GT(taken, kLines / 20);
    EXPECT_LT(taken, kLines / 2);
}

} // namespace
