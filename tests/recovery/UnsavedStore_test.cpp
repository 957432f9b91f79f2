#include "recovery/Journal.h"
#include "recovery/JournalLines.h"
#include "recovery/JournalPlace.h"
#include "recovery/UnsavedStore.h"
#include "tests/recovery/UnsavedSample.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

namespace fs = std::filesystem;

using Result = CUnsavedStore::Result;
using namespace std::chrono_literals;

namespace {

struct UnsavedStore : testing::Test {
    /// A journal begun at that moment, with one edit that tells it from others.
    CJournal Begin(const char* stamp, const std::u16string& text = u"1") const
    {
        WorkHeader header = SampleHeader();
        header.begun = *TimeOfStamp(stamp);
        std::error_code fault;
        auto journal = CJournal::Begin(folder.Path(), header, fault);
        EXPECT_TRUE(journal) << fault.message();
        const bool isWritten = text.empty() || journal->Append(std::vector{TextCell({0, 0}, text)});
        EXPECT_TRUE(isWritten);
        return *std::move(journal);
    }

    static std::u16string TextOf(const std::optional<CClaimedWork>& claimed)
    {
        return claimed ? std::u16string(claimed->Work().cells.at(0).state.Text()) : u"none";
    }

    /// The IDs with the letters of their states.
    std::vector<std::string> Listed() const
    {
        std::vector<std::string> lines;
        for (const UnsavedEntry& entry : store.List())
            lines.push_back(entry.id.substr(0, 8) + "OLD"[static_cast<std::size_t>(entry.state)] +
                            (entry.header ? "" : " unreadable") + (entry.isDamaged ? " damaged" : ""));
        return lines;
    }

    std::string IdOf(const char* begin) const
    {
        for (const UnsavedEntry& entry : store.List())
            if (entry.id.starts_with(begin))
                return entry.id;
        return {};
    }

    fs::path Unsaved() const { return UnsavedFolder(folder.Path()); }

    /// A file of that name and content among the journals.
    void Put(const std::string& name, const std::string& text) const
    {
        fs::create_directories((Unsaved() / name).parent_path());
        WriteAll(Unsaved() / name, std::as_bytes(std::span(text)));
    }

    using Texts = std::vector<std::string>;

    CTempFolder folder;
    CUnsavedStore store{folder.Path()};
};

constexpr const char* kFirst = "20261101T000000.000Z";
constexpr const char* kSecond = "20261102T000000.000Z";
constexpr const char* kThird = "20261103T000000.000Z";

} // namespace

TEST_F(UnsavedStore, WithoutAFolderIsEmptyAndMakesNone)
{
    for (const fs::path& data : {fs::path(), folder / "missing"}) {
        const CUnsavedStore none(data);
        EXPECT_TRUE(none.List().empty());
        EXPECT_FALSE(none.ClaimOldest());
        EXPECT_FALSE(none.Read("20261101T000000.000Z-00000000"));
        EXPECT_EQ(none.Drop("x"), Result::Missing);
        EXPECT_EQ(none.Remove("x"), Result::Missing);
        none.RemoveOldDropped(UtcNow());
    }
    EXPECT_TRUE(fs::is_empty(folder.Path()));
    EXPECT_FALSE(fs::exists("unsaved"));
}

TEST_F(UnsavedStore, ClaimsTheOldestThatNobodyHolds)
{
    {
        const CJournal left = Begin(kThird, u"3");
    }
    {
        const CJournal left = Begin(kSecond, u"2");
    }
    const CJournal open = Begin(kFirst, u"1");
    const auto second = store.ClaimOldest();
    EXPECT_EQ(TextOf(second), u"2");
    auto third = store.ClaimOldest();
    EXPECT_EQ(TextOf(third), u"3");
    EXPECT_EQ(TextOf(store.ClaimOldest()), u"none");
    EXPECT_EQ(Listed(), (Texts{"20261101O", "20261102O", "20261103O"}));
    third.reset();
    EXPECT_EQ(TextOf(store.ClaimOldest()), u"3");
}

TEST_F(UnsavedStore, GivesClaimedWorkUp)
{
    {
        const CJournal left = Begin(kFirst, u"1");
    }
    {
        const CJournal left = Begin(kSecond, u"2");
    }
    EXPECT_TRUE(store.ClaimOldest()->Remove());
    auto second = store.ClaimOldest();
    const UtcTime now = *TimeOfStamp(kThird);
    EXPECT_TRUE(second->Drop(now));
    EXPECT_FALSE(second->Remove());
    EXPECT_EQ(Listed(), Texts{"20261102D"});
    EXPECT_EQ(JournalsIn(DroppedFolder(folder.Path())).at(0).dropped, now);
    EXPECT_EQ(store.Read(IdOf("20261102"))->cells.size(), 1u);
    EXPECT_FALSE(store.ClaimOldest());
}

TEST_F(UnsavedStore, PassesDamageOver)
{
    {
        const CJournal empty = Begin(kFirst, u"");
    }
    {
        const CJournal left = Begin(kThird, u"3");
    }
    Put(std::string(kSecond) + "-00000001.jsonl", "");
    Put(std::string(kSecond) + "-00000002.jsonl", "rubbish\n");
    Put(std::string(kSecond) + "-00000003.jsonl", std::string(100000, '\0'));
    EXPECT_EQ(TextOf(store.ClaimOldest()), u"3");
    EXPECT_EQ(Listed(), (Texts{"20261103L", "20261102D unreadable damaged", "20261102D unreadable damaged",
                               "20261102D unreadable damaged"}));
}

TEST_F(UnsavedStore, LeavesWhatIsNotItsOwn)
{
    std::string json = R"({"vantor":"unsaved","version":2,"more":[]})";
    std::string line(kLinePrefix, ' ');
    PutChecksum(ChecksumOf(json, 0), line);
    Put(std::string(kFirst) + "-00000001.jsonl", line + json + "\n");
    Put("notes.jsonl", "rubbish");
    Put(std::string(kFirst) + "-0000000G.jsonl", "rubbish");
    Put(std::string(kFirst) + "-00000001.jsonl~", "rubbish");
    Put("dropped/" + std::string(kFirst) + "-00000001.jsonl", "rubbish");
    fs::create_directory(Unsaved() / (std::string(kFirst) + "-00000002.jsonl"));
    EXPECT_FALSE(store.ClaimOldest());
    store.RemoveOldDropped(UtcNow() + 24h * 10000);
    EXPECT_EQ(Listed(), (Texts{"20261101L unreadable damaged", "20261101L unreadable damaged"}));
    EXPECT_EQ(std::distance(fs::directory_iterator(Unsaved()), {}), 6);
}

TEST_F(UnsavedStore, ListsWhatIsKnown)
{
    CJournal journal = Begin(kFirst, u"1");
    EXPECT_TRUE(journal.Append(std::vector{TextCell({2, 3}, u"ab")}));
    const UnsavedEntry entry = store.List().at(0);
    EXPECT_EQ(entry.state, UnsavedState::Open);
    EXPECT_EQ(entry.header->file, "/recipes/oven.rcp");
    EXPECT_EQ(entry.edits, 2u);
    EXPECT_GT(entry.lastEdit, UtcNow() - 1h);
    EXPECT_FALSE(entry.isDamaged);
    EXPECT_EQ(entry.id, JournalAt(OnlyJournal(Unsaved()))->id);
    EXPECT_EQ(store.Drop(entry.id), Result::Open);
    EXPECT_EQ(store.Remove(entry.id), Result::Open);
}

TEST_F(UnsavedStore, TellsAJournalThatEndsWithinALine)
{
    {
        const CJournal left = Begin(kFirst, u"1");
    }
    const fs::path path = OnlyJournal(Unsaved());
    Bytes bytes = ReadAll(path);
    bytes.push_back(std::byte{'0'});
    WriteAll(path, bytes);
    EXPECT_EQ(Listed(), Texts{"20261101L damaged"});
    EXPECT_EQ(TextOf(store.ClaimOldest()), u"1");
}

TEST_F(UnsavedStore, DropsAndRemovesByName)
{
    {
        const CJournal left = Begin(kFirst);
    }
    {
        const CJournal left = Begin(kSecond);
    }
    const std::string first = IdOf("20261101");
    EXPECT_EQ(store.Drop(first), Result::Done);
    EXPECT_EQ(store.Drop(first), Result::Done);
    EXPECT_EQ(Listed(), (Texts{"20261102L", "20261101D"}));
    EXPECT_EQ(store.Remove(first), Result::Done);
    EXPECT_EQ(store.Remove(first), Result::Missing);
    EXPECT_EQ(store.Remove(IdOf("20261102")), Result::Done);
    EXPECT_EQ(Listed(), Texts{});
    EXPECT_EQ(store.Remove("../unsaved/" + first), Result::Missing);
}

namespace {

struct KeptDays {
    const char* dropped;
    const char* now;
    bool isKept;
};

constexpr KeptDays kKeptDays[] = {
    {"20261101T120000.000Z", "20261101T120000.000Z", true},  //
    {"20261101T120000.000Z", "20261130T235959.999Z", true},  //
    {"20261101T120000.000Z", "20261201T120000.000Z", true},  // 30 days to the millisecond
    {"20261101T120000.000Z", "20261201T120000.001Z", false}, //
    {"20240201T000000.000Z", "20240302T000000.000Z", true},  // a leap year
    {"20240201T000000.000Z", "20240302T000000.001Z", false}, //
    {"20261215T000000.000Z", "20270201T000000.000Z", false}, //
    {"20261101T120000.000Z", "20200101T000000.000Z", true},  // the clock was set back
};

} // namespace

TEST_F(UnsavedStore, KeepsWhatWasDroppedForThirtyDays)
{
    for (const KeptDays& kept : kKeptDays) {
        CJournal journal = Begin("20200101T000000.000Z");
        ASSERT_TRUE(journal.Drop(*TimeOfStamp(kept.dropped)));
        store.RemoveOldDropped(*TimeOfStamp(kept.now));
        EXPECT_EQ(!store.List().empty(), kept.isKept) << kept.dropped << ' ' << kept.now;
        fs::remove_all(Unsaved());
    }
}

TEST_F(UnsavedStore, ClearsAwayWhatWasNeverBegun)
{
    Put("vantor-1.new", "half a header");
    store.RemoveOldDropped(UtcNow());
    EXPECT_TRUE(fs::is_empty(Unsaved()));
}

TEST_F(UnsavedStore, TakesAThousandJournals)
{
    constexpr std::size_t kCount = 1000;
    for (std::size_t i = 0; i < kCount; ++i)
        const CJournal left = Begin(kFirst, u"1");
    const auto entries = store.List();
    EXPECT_EQ(entries.size(), kCount);
    std::set<std::string> ids;
    for (const UnsavedEntry& entry : entries)
        ids.insert(entry.id);
    EXPECT_EQ(ids.size(), kCount);
    std::vector<CClaimedWork> claimed;
    for (int i = 0; i < 20; ++i)
        claimed.push_back(store.ClaimOldest().value());
    for (CClaimedWork& work : claimed)
        EXPECT_TRUE(work.Drop());
    EXPECT_EQ(JournalsIn(DroppedFolder(folder.Path())).size(), claimed.size());
}
