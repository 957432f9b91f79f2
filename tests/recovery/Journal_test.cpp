#include "recovery/Journal.h"
#include "recovery/JournalPlace.h"
#include "recovery/JournalReader.h"
#include "tests/recovery/UnsavedSample.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace fs = std::filesystem;

using Commands = std::vector<std::vector<UnsavedCell>>;

namespace {

struct Journal : testing::Test {
    CJournal Begin(const WorkHeader& header) const
    {
        std::error_code fault;
        auto journal = CJournal::Begin(folder.Path(), header, fault);
        EXPECT_TRUE(journal) << fault.message();
        return *std::move(journal);
    }

    fs::path Path() const { return OnlyJournal(UnsavedFolder(folder.Path())); }
    static JournalContent Read(const fs::path& path) { return ReadJournal(CFile(path, CFile::Mode::Read)); }

    /// The work as it is read from a journal of these commands.
    UnsavedWork Kept(const WorkHeader& header, const Commands& commands) const
    {
        CJournal journal = Begin(header);
        for (const auto& command : commands)
            EXPECT_TRUE(journal.Append(command));
        const JournalContent content = Read(Path());
        EXPECT_EQ(content.kind, JournalContent::Kind::Readable);
        EXPECT_FALSE(content.isCut);
        journal.End();
        return content.work;
    }

    CTempFolder folder;
};

/// Where each line ends, and what the journal holds up to there.
struct WholePart {
    std::size_t end;
    std::string told;
};

} // namespace

TEST_F(Journal, HoldsTheLastStateOfEachEditedCell)
{
    const WordRun old = BytesOf({1, 2});
    const UnsavedWork work =
        Kept(SampleHeader(), {{TextCell({1, 0}, u"5", old), TextCell({2, 0}, u"6", old)},
                              {TextCell({0, 3}, u"ab", BytesOf({0, 0, 0, 0}))},
                              {},
                              {TextCell({1, 0}, u"7", old), {{2, 0}, CCellState(), old, std::nullopt}}});
    EXPECT_EQ(Told(work.cells),
              Told(std::vector{TextCell({0, 3}, u"ab", BytesOf({0, 0, 0, 0})), TextCell({1, 0}, u"7", old)}));
    EXPECT_GT(work.lastEdit, work.header.begun);
}

TEST_F(Journal, LooksAsDocumented)
{
    CJournal journal = Begin(SampleHeader());
    EXPECT_TRUE(journal.Append(
        std::vector{TextCell({0, 0}, u"a\"\u00e9", BytesOf({0x92, 0x09})), UnsavedCell{{1, 0}, CCellState(), {}, {}},
                    UnsavedCell{{2, 1}, CCellState::OfWords(u"\x960\x1"), BytesOf({0x92, 0x09, 0x60}), {}}}));
    const Bytes bytes = ReadAll(Path());
    const std::string text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    EXPECT_EQ(text.substr(8, 118), " {\"vantor\":\"unsaved\",\"version\":1,\"begun\":\"20261122T110208.123Z\","
                                   "\"file\":\"/recipes/oven.rcp\",\"type\":\"rcp\",\"readAs\":\"rcp\"");
    EXPECT_TRUE(text.ends_with(R"(,"cells":[[1,2,"0992","a\"é"],[2,2,"",null],[3,3,"0992 60",{"words":"0960 0001"}]]})"
                               "\n"));
}

TEST_F(Journal, KeepsAllOfTheHeader)
{
    UnsavedWork work{SampleHeader(FileType::Erp), {}, {}};
    WorkHeader& header = work.header;
    header.readAs = FileType::Csv;
    header.startAddress = -5;
    header.format.itemCount = 7; // other than it has
    header.format.name.fill(u'x');
    DataItem& item = *header.format.items[0];
    item.reserved0 = 1;
    item.reserved1 = -2;
    item.reserved2 = 3;
    item.minValue = INT64_MIN;
    item.maxValue = INT64_MAX;
    item.unicode = 9;
    item.description = {u'a', 0xD83D, u'b', 0, u'\n', u'"', 0xDC00};
    EXPECT_EQ(Told(Kept(header, {})), Told(work));
    header.format.itemCount = 1;
    EXPECT_EQ(Told(Kept(header, {})), Told(work));
    header.file.clear();
    EXPECT_EQ(Told(Kept(header, {})), Told(work));
}

TEST_F(Journal, KeepsAnyText)
{
    std::u16string all;
    for (char16_t unit = 0; unit < 0x200; ++unit)
        all += unit;
    all += u"\U0001F600\xFFFD\xFFFF";
    for (const std::u16string& text : {std::u16string(), all, std::u16string{0xD83D}, std::u16string{0xDE00, 0xD83D},
                                       std::u16string{u'a', 0xDC00}}) {
        const std::vector cells{TextCell({0, 3}, text)};
        EXPECT_EQ(Told(Kept(SampleHeader(), {cells}).cells), Told(cells));
    }
}

TEST_F(Journal, KeepsTheFieldsOfATableAndOfANewDocument)
{
    const std::vector<UnsavedCell> cells{{{0, 0}, CCellState::OfText(u"1"), {}, u"\"quoted\xD83D"},
                                         {{0, 1}, CCellState::OfText(u"2"), {}, std::nullopt},
                                         {{0, 2}, CCellState::OfText(u"3"), {}, u""}};
    EXPECT_EQ(Told(Kept(SampleHeader(FileType::Csv), {cells}).cells), Told(cells));
    WorkHeader header = SampleHeader();
    header.file.clear();
    std::vector<UnsavedCell> fresh = cells;
    fresh.push_back({{2, 0}, CCellState::OfWords(u"\x1234"), {}, u"0"});
    EXPECT_EQ(Told(Kept(header, {fresh}).cells), Told(fresh));
}

TEST_F(Journal, IsFlushedWhenAskedTo)
{
    CJournal journal = Begin(SampleHeader());
    EXPECT_FALSE(journal.IsFlushed());
    EXPECT_TRUE(journal.Flush());
    EXPECT_TRUE(journal.IsFlushed());
    EXPECT_TRUE(journal.Append(std::vector{TextCell({0, 0}, u"1")}));
    EXPECT_FALSE(journal.IsFlushed());
    EXPECT_TRUE(journal.Flush());
    EXPECT_TRUE(journal.IsFlushed());
}

TEST_F(Journal, GoesWhenTheWorkIsSaved)
{
    CJournal journal = Begin(SampleHeader());
    EXPECT_TRUE(journal.Append(std::vector{TextCell({0, 0}, u"1")}));
    journal.End();
    EXPECT_TRUE(fs::is_empty(UnsavedFolder(folder.Path())));
    EXPECT_FALSE(journal.Append(std::vector{TextCell({0, 0}, u"2")}));
    EXPECT_FALSE(journal.Flush());
    EXPECT_TRUE(fs::is_empty(UnsavedFolder(folder.Path())));
}

TEST_F(Journal, StaysWhenItsProgramGoes)
{
    CJournal journal = Begin(SampleHeader());
    EXPECT_TRUE(journal.Append(std::vector{TextCell({0, 0}, u"1")}));
    CJournal moved = std::move(journal);
    EXPECT_TRUE(moved.Append(std::vector{TextCell({1, 0}, u"1")}));
    journal = Begin(SampleHeader()); // ends what it had: nothing
    journal.End();
    EXPECT_EQ(Read(Path()).work.cells.size(), 2u);
}

TEST_F(Journal, OfWhatWasDroppedIsKept)
{
    CJournal journal = Begin(SampleHeader());
    EXPECT_TRUE(journal.Append(std::vector{TextCell({0, 0}, u"1")}));
    const std::string id = JournalAt(Path())->id;
    const UtcTime now = *TimeOfStamp("20261123T000000.000Z");
    EXPECT_TRUE(journal.Drop(now));
    const auto dropped = JournalsIn(DroppedFolder(folder.Path()));
    ASSERT_EQ(dropped.size(), 1u);
    EXPECT_EQ(dropped[0].id, id);
    EXPECT_EQ(dropped[0].dropped, now);
    EXPECT_EQ(Read(dropped[0].path).work.cells.size(), 1u);
    EXPECT_EQ(Path(), fs::path());
    EXPECT_EQ(fs::status(DroppedFolder(folder.Path())).permissions(), fs::perms::owner_all);
}

TEST_F(Journal, WithoutAnEditedCellGoesWhenItIsDropped)
{
    CJournal journal = Begin(SampleHeader());
    EXPECT_TRUE(journal.Append(std::vector{TextCell({0, 0}, u"1")}));
    EXPECT_TRUE(journal.Append(std::vector{UnsavedCell{{0, 0}, CCellState(), {}, {}}}));
    EXPECT_TRUE(journal.Drop());
    EXPECT_TRUE(fs::is_empty(UnsavedFolder(folder.Path())));
}

TEST_F(Journal, ThatCannotBeMadeSaysWhy)
{
    std::error_code fault;
    EXPECT_FALSE(CJournal::Begin({}, SampleHeader(), fault));
    EXPECT_TRUE(fault);
    WriteAll(folder / "file", {});
    fault.clear();
    EXPECT_FALSE(CJournal::Begin(folder / "file", SampleHeader(), fault));
    EXPECT_EQ(fault, std::errc::not_a_directory);
    WriteAll(folder / "unsaved", {});
    fault.clear();
    EXPECT_FALSE(CJournal::Begin(folder.Path(), SampleHeader(), fault));
    EXPECT_EQ(fault, std::errc::not_a_directory);
}

/// Wherever a journal is cut, and whatever becomes of one of its bytes, what stands before it is read, and nothing
/// else.
TEST_F(Journal, IsReadUpToWhatIsNotAsItWasWritten)
{
    const Commands commands{{TextCell({0, 0}, u"12", BytesOf({1, 0})), TextCell({1, 3}, u"\u540D\xD83D")},
                            {{{2, 1}, CCellState::OfWords(u"\x960\x1"), BytesOf({1, 2, 3}), {}}},
                            {TextCell({0, 0}, u"-7", BytesOf({1, 0})), {{1, 3}, CCellState(), {}, {}}}};
    CJournal journal = Begin(SampleHeader());
    std::vector<WholePart> parts;
    for (std::size_t i = 0;; ++i) {
        const auto cells = LastStates(std::span(commands).first(i));
        parts.push_back(
            {static_cast<std::size_t>(fs::file_size(Path())), Told(UnsavedWork{SampleHeader(), cells, {}})});
        if (i == commands.size())
            break;
        EXPECT_TRUE(journal.Append(commands[i]));
    }
    const Bytes whole = ReadAll(Path());
    const auto expectUpTo = [&](const Bytes& bytes, std::size_t damage) {
        WriteAll(folder / "copy", bytes);
        const JournalContent content = Read(folder / "copy");
        const auto next = std::find_if(parts.begin(), parts.end(), [&](const auto& part) { return part.end > damage; });
        if (next == parts.begin()) {
            EXPECT_EQ(content.kind, JournalContent::Kind::Damaged) << damage;
            return;
        }
        ASSERT_EQ(content.kind, JournalContent::Kind::Readable) << damage;
        EXPECT_EQ(Told(content.work), std::prev(next)->told) << damage;
        EXPECT_EQ(content.isCut, std::prev(next)->end != bytes.size()) << damage;
    };
    for (std::size_t at = 0; at <= whole.size(); ++at) {
        expectUpTo(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(at)), at);
        if (at == whole.size())
            break;
        for (const int change : {0x01, 0x20, 0xFF}) {
            Bytes bytes = whole;
            bytes[at] ^= static_cast<std::byte>(change);
            expectUpTo(bytes, at);
        }
        Bytes ended = whole;
        if (ended[at] != std::byte{'\n'}) {
            ended[at] = std::byte{'\n'};
            expectUpTo(ended, at);
        }
    }
}

/// A line that is whole, but not where it was.
TEST_F(Journal, EndsAtALineThatIsLostDoubledOrMoved)
{
    CJournal journal = Begin(SampleHeader());
    std::vector<std::size_t> ends{0, static_cast<std::size_t>(fs::file_size(Path()))};
    for (const char16_t* text : {u"1", u"2", u"3"}) {
        EXPECT_TRUE(journal.Append(std::vector{TextCell({0, 0}, text)}));
        ends.push_back(static_cast<std::size_t>(fs::file_size(Path())));
    }
    const Bytes whole = ReadAll(Path());
    const auto textOfLines = [&](std::initializer_list<std::size_t> lines) {
        Bytes bytes;
        for (const std::size_t line : lines)
            bytes.insert(bytes.end(), whole.begin() + static_cast<std::ptrdiff_t>(ends[line]),
                         whole.begin() + static_cast<std::ptrdiff_t>(ends[line + 1]));
        WriteAll(folder / "copy", bytes);
        const auto cells = Read(folder / "copy").work.cells;
        return cells.empty() ? std::u16string() : std::u16string(cells[0].state.Text());
    };
    EXPECT_EQ(textOfLines({0, 1, 2, 3}), u"3");
    EXPECT_EQ(textOfLines({0, 1, 3}), u"1");
    EXPECT_EQ(textOfLines({0, 1, 1, 2, 3}), u"1");
    EXPECT_EQ(textOfLines({0, 2, 1, 3}), u"");
    EXPECT_EQ(textOfLines({1, 2, 3}), u"");
}

namespace {

class CRandomCells {
public:
    explicit CRandomCells(std::uint32_t seed) : m_random(seed) {}

    std::vector<UnsavedCell> Command(const WorkHeader& header)
    {
        std::vector<UnsavedCell> cells;
        for (std::uint32_t i = Below(6); i-- > 0;)
            cells.push_back(Cell(header));
        return cells;
    }

    std::uint32_t Below(std::uint32_t end) { return static_cast<std::uint32_t>(m_random() % end); }

private:
    UnsavedCell Cell(const WorkHeader& header)
    {
        constexpr std::uint32_t kWords[] = {1, 2, 2, 2};
        UnsavedCell cell{{static_cast<std::int32_t>(Below(3)), Below(4)}, {}, {}, {}};
        const std::uint32_t words = kWords[cell.place.column];
        if (HasFileOfWords(header))
            for (std::uint32_t i = Below(2 * words + 1); i-- > 0;)
                cell.oldWords.push_back(static_cast<std::byte>(m_random()));
        else if (Below(3) > 0)
            cell.oldText = Text();
        const bool takesWords = header.type != FileType::Csv;
        const std::uint32_t kind = Below(takesWords ? 3 : 2);
        if (kind == 1)
            cell.state = CCellState::OfText(Text());
        if (kind == 2)
            cell.state = CCellState::OfWords(Units(words));
        return cell;
    }
    std::u16string Text() { return Units(Below(12)); }
    std::u16string Units(std::uint32_t count)
    {
        std::u16string units;
        while (count-- > 0)
            units += static_cast<char16_t>(Below(2) == 0 ? Below(0x80) : m_random());
        return units;
    }

    std::mt19937 m_random;
};

} // namespace

TEST_F(Journal, OfRandomCommandsIsThatOfAPlainModel)
{
    for (std::uint32_t seed = 0; seed < 200; ++seed) {
        CRandomCells random(seed);
        WorkHeader header = SampleHeader(static_cast<FileType>(seed % 4));
        if (seed % 5 == 0 && header.type != FileType::Csv)
            header.file.clear();
        Commands commands;
        for (std::uint32_t i = random.Below(40); i-- > 0;)
            commands.push_back(random.Command(header));
        ASSERT_EQ(Told(Kept(header, commands)), Told(UnsavedWork{header, LastStates(commands), {}})) << seed;
    }
}

TEST_F(Journal, TakesACommandOfManyCells)
{
    WorkHeader header = SampleHeader();
    header.rowCount = 250'000;
    std::vector<UnsavedCell> cells;
    for (std::int32_t row = 0; row < header.rowCount; ++row)
        cells.push_back(TextCell({row, 0}, u"12.5", BytesOf({row & 0xFF, 9})));
    const UnsavedWork work = Kept(header, {cells});
    EXPECT_TRUE(work.cells == cells);
}
