#include "library/LibraryMerge.h"
#include "tests/library/FormatTexts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <set>

namespace {

struct MergeCase {
    const char* name;
    const char16_t* base;
    const char16_t* ours;
    const char16_t* theirs;
    const char16_t* merged;
    friend void PrintTo(const MergeCase& c, std::ostream* out) { *out << c.name; }
};

struct LibraryMerge : testing::TestWithParam<MergeCase> {
    static Formats Merged(const Formats& base, const Formats& ours, const Formats& theirs)
    {
        return MergeFormats(base, ours, theirs).formats;
    }
};

/// One name of 64 units that cannot be cut after 60: a character takes the 60th and the 61st.
const std::u16string kLong = std::u16string(59, u'x') + u"\U0001F35E" + u"abc";
const std::u16string kLongCut = std::u16string(59, u'x');

/// Libraries of a few names, some of them twice, and the changes of two programs to one.
class CRandomLibraries {
public:
    explicit CRandomLibraries(unsigned seed) : m_random(seed) {}

    Formats Make(bool mayNameTwice)
    {
        Formats formats;
        for (const char16_t* name : {u"A", u"B", u"C", u"D", u"E"})
            for (int count = Below(mayNameTwice ? 3 : 2); count > 0; --count)
                formats.push_back(std::make_unique<DataFormat>(NumberedFormat(name, ++m_last)));
        std::shuffle(formats.begin(), formats.end(), m_random);
        return formats;
    }

    /// Changes both in the same way now and then.
    void Change(Formats& ours, Formats& theirs, bool mayNameTwice)
    {
        for (int changes = Below(6); changes > 0; --changes) {
            const int side = Below(5);
            const auto how = static_cast<unsigned>(m_random());
            ++m_last;
            if (side != 1)
                ChangeOne(ours, how, mayNameTwice);
            if (side != 2 && side != 3)
                ChangeOne(theirs, how, mayNameTwice);
        }
    }

private:
    int Below(int count) { return static_cast<int>(m_random() % static_cast<unsigned>(count)); }

    void ChangeOne(Formats& formats, unsigned how, bool mayNameTwice) const
    {
        const std::u16string name(1, static_cast<char16_t>(u'A' + how / 16 % 7));
        const auto place = std::find_if(formats.begin(), formats.end(),
                                        [&](const auto& format) { return TextOf(format->name) == name; });
        if (place == formats.end() || (mayNameTwice && how % 4 == 0))
            formats.push_back(std::make_unique<DataFormat>(NumberedFormat(name, m_last)));
        else if (how % 2 == 0)
            formats.erase(place);
        else
            (*place)->items[0]->dataLength = m_last;
    }

    std::mt19937 m_random;
    int m_last = 0;
};

using Key = std::pair<std::u16string, int>;

std::map<Key, int> ByKey(const Formats& formats)
{
    std::map<std::u16string, int> counts;
    std::map<Key, int> keyed;
    for (const auto& format : formats) {
        const std::u16string name(TextOf(format->name));
        keyed[{name, counts[name]++}] = format->items[0]->dataLength;
    }
    return keyed;
}

int NumberOf(const std::map<Key, int>& formats, const Key& key)
{
    const auto found = formats.find(key);
    return found != formats.end() ? found->second : 0;
}

/// What must be there after a merge, in any order, by the plainest rule.
std::multiset<int> ExpectedNumbers(const Formats& base, const Formats& ours, const Formats& theirs)
{
    const auto b = ByKey(base);
    const auto o = ByKey(ours);
    const auto t = ByKey(theirs);
    std::set<Key> keys;
    for (const auto& [key, number] : o)
        keys.insert(key);
    for (const auto& [key, number] : t)
        keys.insert(key);
    std::multiset<int> numbers;
    for (const Key& key : keys) {
        const int our = NumberOf(o, key);
        const int their = NumberOf(t, key);
        if (our != their && our != NumberOf(b, key))
            numbers.insert(our);
        if (their == our || their != NumberOf(b, key))
            numbers.insert(their);
    }
    numbers.erase(0);
    return numbers;
}

std::multiset<int> NumbersIn(const Formats& formats)
{
    std::multiset<int> numbers;
    for (const auto& format : formats)
        numbers.insert(format->items[0]->dataLength);
    return numbers;
}

} // namespace

TEST_P(LibraryMerge, PutsBothTogether)
{
    const MergeCase& c = GetParam();
    EXPECT_EQ(TextOf(Merged(FormatsIn(c.base), FormatsIn(c.ours), FormatsIn(c.theirs))), c.merged);
}

TEST_P(LibraryMerge, TakesNothingASecondTime)
{
    const MergeCase& c = GetParam();
    const Formats base = FormatsIn(c.base);
    const Formats ours = FormatsIn(c.ours);
    const Formats theirs = FormatsIn(c.theirs);
    const Formats merged = FormatsIn(c.merged);
    EXPECT_EQ(TextOf(Merged(theirs, merged, theirs)), c.merged);
    EXPECT_EQ(TextOf(Merged(base, merged, theirs)), c.merged);
    EXPECT_EQ(TextOf(Merged(base, ours, merged)), c.merged) << "as after a save that was told as failed";
    EXPECT_EQ(TextOf(Merged(merged, merged, merged)), c.merged);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, LibraryMerge, testing::Values(
    //        name                    base               ours                theirs              merged
    MergeCase{"NothingChanged",       u"A=1, B=2",       u"A=1, B=2",        u"A=1, B=2",        u"A=1, B=2"},
    MergeCase{"NothingAtAll",         u"",               u"",                u"",                u""},
    MergeCase{"WeChanged",            u"A=1, B=2",       u"A=3, B=2",        u"A=1, B=2",        u"A=3, B=2"},
    MergeCase{"TheyChanged",          u"A=1, B=2",       u"A=1, B=2",        u"A=1, B=4",        u"A=1, B=4"},
    MergeCase{"EachAnother",          u"A=1, B=2",       u"A=3, B=2",        u"A=1, B=4",        u"A=3, B=4"},
    MergeCase{"BothAlike",            u"A=1, B=2",       u"A=3, B=2",        u"A=3, B=2",        u"A=3, B=2"},
    MergeCase{"BothInOtherWays",      u"A=1, B=2",       u"A=3, B=2",        u"A=4, B=2",        u"A=4, B=2, A (2)=3"},
    MergeCase{"WeAdded",              u"A=1",            u"A=1, N=2",        u"A=1",             u"A=1, N=2"},
    MergeCase{"TheyAdded",            u"A=1",            u"A=1",             u"A=1, N=2",        u"A=1, N=2"},
    MergeCase{"BothAdded",            u"A=1",            u"A=1, M=2",        u"A=1, N=3",        u"A=1, N=3, M=2"},
    MergeCase{"BothAddedAlike",       u"A=1",            u"A=1, N=2",        u"A=1, N=2",        u"A=1, N=2"},
    MergeCase{"BothAddedTheName",     u"A=1",            u"A=1, N=2",        u"A=1, N=3",        u"A=1, N=3, N (2)=2"},
    MergeCase{"WeDeleted",            u"A=1, B=2",       u"B=2",             u"A=1, B=2",        u"B=2"},
    MergeCase{"TheyDeleted",          u"A=1, B=2",       u"A=1, B=2",        u"B=2",             u"B=2"},
    MergeCase{"EachDeletedAnother",   u"A=1, B=2, C=3",  u"B=2, C=3",        u"A=1, C=3",        u"C=3"},
    MergeCase{"BothDeleted",          u"A=1, B=2",       u"B=2",             u"B=2",             u"B=2"},
    MergeCase{"BothDeletedAll",       u"A=1, B=2",       u"",                u"",                u""},
    MergeCase{"WeDeletedTheyChanged", u"A=1, B=2",       u"B=2",             u"A=3, B=2",        u"A=3, B=2"},
    MergeCase{"WeChangedTheyDeleted", u"A=1, B=2",       u"A=3, B=2",        u"B=2",             u"B=2, A=3"},
    MergeCase{"WeDeletedTheyAdded",   u"A=1, B=2",       u"B=2",             u"A=1, B=2, N=3",   u"B=2, N=3"},
    MergeCase{"OurOrderWhereTheyDidNothing", u"A=1, C=3", u"A=1, B=2, C=3",  u"A=1, C=3",        u"A=1, B=2, C=3"},
    MergeCase{"TheirOrderElse",       u"A=1, B=2",       u"A=1, N=3, B=2",   u"B=2, A=1",        u"B=2, A=1, N=3"},
    MergeCase{"TheSecondOfAName",     u"A=1, A=2",       u"A=1, A=3",        u"A=4, A=2",        u"A=4, A=3"},
    MergeCase{"BothTheSecondOfAName", u"A=1, A=2",       u"A=1, A=3",        u"A=1, A=4",        u"A=1, A=4, A (2)=3"},
    MergeCase{"BothAddedASecond",     u"A=1",            u"A=1, A=2",        u"A=1, A=3",        u"A=1, A=3, A (2)=2"},
    MergeCase{"TheyAddedASecondAndAThird", u"A=1",       u"A=1, A=2",        u"A=1, A=2, A=3",   u"A=1, A=2, A=3"},
    MergeCase{"WeDeletedTheFirstOfAName", u"A=1, A=2",   u"A=2",             u"A=1, A=2, N=3",   u"A=2, N=3"},
    MergeCase{"TheNumberIsTheirs",    u"A=1",            u"A=2",             u"A=3, A (2)=4",    u"A=3, A (2)=4, A (3)=2"},
    MergeCase{"TheNumberIsOurs",      u"A=1, A (2)=4",   u"A=2, A (2)=4",    u"A=3, A (2)=4",    u"A=3, A (2)=4, A (3)=2"},
    MergeCase{"WeRenamed",            u"A=1, B=2",       u"C=1, B=2",        u"A=1, B=2",        u"C=1, B=2"},
    MergeCase{"TheyRenamed",          u"A=1, B=2",       u"A=1, B=2",        u"C=1, B=2",        u"C=1, B=2"},
    MergeCase{"WeRenamedTheyChanged", u"A=1, B=2",       u"C=1, B=2",        u"A=3, B=2",        u"A=3, B=2, C=1"},
    MergeCase{"WeChangedTheyRenamed", u"A=1, B=2",       u"A=3, B=2",        u"C=1, B=2",        u"C=1, B=2, A=3"},
    MergeCase{"WeRenamedTheyAdded",   u"A=1, B=2",       u"C=1, B=2",        u"A=1, B=2, N=3",   u"B=2, N=3, C=1"},
    MergeCase{"WeRenamedTheyDeleted", u"A=1, B=2",       u"C=1, B=2",        u"B=2",             u"B=2, C=1"},
    MergeCase{"EachRenamedOtherwise", u"A=1",            u"C=1",             u"D=1",             u"D=1, C=1"},
    MergeCase{"BothRenamedToIt",      u"A=1",            u"C=1",             u"C=1",             u"C=1"},
    MergeCase{"WeRenamedWhatTheyAdd", u"A=1",            u"C=1",             u"A=1, C=2",        u"C=2, C (2)=1"},
    MergeCase{"WeRenamedTheFirstOfANameTheyChangedTheSecond", u"A=1, A=2", u"C=1, A=2", u"A=1, A=3", u"A=2, A=3, C=1"},
    MergeCase{"TwoGetNumbers",        u"A=1, A=2",       u"A=3, A=4",        u"A=5, A=6",        u"A=5, A=6, A (2)=3, A (3)=4"},
    MergeCase{"OfNumberedOnes",       u"A (2)=1",        u"A (2)=2",         u"A (2)=3",         u"A (2)=3, A (2) (2)=2"},
    MergeCase{"NothingWasThere",      u"",               u"A=1, B=2",        u"B=3, C=4",        u"B=3, C=4, A=1, B (2)=2"},
    MergeCase{"WithoutAName",         u"=1",             u"=2",              u"=3",              u"=3,  (2)=2"}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST(LibraryMergeMoves, TellWhereEachOfOursIs)
{
    const MergedFormats merged = MergeFormats(FormatsIn(u"A=1, B=2, C=3, D=4"), FormatsIn(u"A=1, B=2, C=5, D=6, N=7"),
                                              FormatsIn(u"T=9, A=8, C=3, D=10"));
    EXPECT_EQ(TextOf(merged.formats), u"T=9, A=8, C=5, D=10, D (2)=6, N=7");
    EXPECT_EQ(merged.moves, (std::vector<FormatMove>{{.to = 1, .hasOtherItems = true},
                                                     {.to = std::nullopt, .hasOtherItems = true},
                                                     {.to = 2, .hasOtherItems = false},
                                                     {.to = 4, .hasOtherItems = false},
                                                     {.to = 5, .hasOtherItems = false}}));
}

TEST(LibraryMergeNames, AreCutSoThatAllOfThemIsReadAgain)
{
    ASSERT_EQ(kLong.size(), 64U);
    const auto with = [](int number) { return FormatsIn(kLong + u"=" + static_cast<char16_t>(u'0' + number)); };
    const MergedFormats merged = MergeFormats(with(1), with(2), with(3));
    EXPECT_EQ(TextOf(merged.formats), kLong + u"=3, " + kLongCut + u" (2)=2");
}

TEST(LibraryMergeNames, GetNumbersOfAnyLength)
{
    std::u16string theirs = u"A=2";
    for (int number = 2; number <= 11; ++number)
        theirs +=
            std::u16string(u", A (") + (number > 9 ? u"1" : u"") + static_cast<char16_t>(u'0' + number % 10) + u")=3";
    const MergedFormats merged = MergeFormats(FormatsIn(u"A=1"), FormatsIn(u"A=4"), FormatsIn(theirs));
    EXPECT_EQ(TextOf(merged.formats), theirs + u", A (12)=4");
}

TEST(LibraryMergeNames, AreThoseThatAreReadAgain)
{
    const std::u16string stored = kLong + u" and more";
    Formats ours;
    ours.push_back(std::make_unique<DataFormat>(NumberedFormat(stored, 1)));
    const Formats theirs = FormatsIn(kLong + u"=1, N=2");
    EXPECT_TRUE(AreSavedAlike(ours, FormatsIn(kLong + u"=1")));
    EXPECT_EQ(TextOf(MergeFormats(ours, ours, theirs).formats), stored + u"=1, N=2");
}

TEST(LibraryMergeItems, ThatASaveLeavesOutAreNoChangeAndStay)
{
    Formats base;
    base.push_back(std::make_unique<DataFormat>(MakeFormat(u"Empty", {})));
    Formats ours = CopyOf(base);
    ours[0]->insertItem(0, std::make_unique<DataItem>(DefaultItem()));
    Formats negative = CopyOf(base);
    negative[0]->itemCount = -1;
    EXPECT_TRUE(AreSavedAlike(base, ours));
    EXPECT_TRUE(AreSavedAlike(negative, ours));

    Formats theirs = CopyOf(base);
    theirs.push_back(std::make_unique<DataFormat>(NumberedFormat(u"N", 1)));
    const MergedFormats merged = MergeFormats(base, ours, theirs);
    ASSERT_EQ(merged.formats.size(), 2U);
    EXPECT_EQ(merged.formats[0]->items.size(), 1U);
    EXPECT_EQ(merged.formats[0]->itemCount, 0);
    EXPECT_EQ(MergeFormats(base, ours, {}).formats.size(), 0U) << "deleted by them, unchanged by us";
}

TEST(LibraryMergeRandom, LosesNothingOfEitherSideAndIsDoneOnce)
{
    constexpr unsigned kSeed = 7;
    CRandomLibraries libraries(kSeed);
    for (int round = 0; round < 5000; ++round) {
        SCOPED_TRACE("seed " + std::to_string(kSeed) + ", round " + std::to_string(round));
        const bool mayNameTwice = round % 2 == 1;
        const Formats base = libraries.Make(mayNameTwice);
        Formats ours = CopyOf(base);
        Formats theirs = CopyOf(base);
        libraries.Change(ours, theirs, mayNameTwice);
        const MergedFormats merged = MergeFormats(base, ours, theirs);
        ASSERT_EQ(NumbersIn(merged.formats), ExpectedNumbers(base, ours, theirs));
        ASSERT_TRUE(AreSavedAlike(MergeFormats(theirs, merged.formats, theirs).formats, merged.formats));
        if (!mayNameTwice) {
            ASSERT_TRUE(AreSavedAlike(MergeFormats(base, merged.formats, theirs).formats, merged.formats));
            ASSERT_TRUE(AreSavedAlike(MergeFormats(base, ours, merged.formats).formats, merged.formats));
        }
        for (std::size_t i = 0; i < ours.size(); ++i) {
            const FormatMove& move = merged.moves[i];
            const int number = ours[i]->items[0]->dataLength;
            ASSERT_EQ(move.hasOtherItems, !move.to || merged.formats[*move.to]->items[0]->dataLength != number);
        }
    }
}
