#include "library/FormatStore.h"
#include "tests/files/AllocationLimit.h"
#include "tests/support/Formats.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <random>
#include <string>

namespace fs = std::filesystem;

namespace {

const DataItem kSpeed = MakeItem(u"Speed", DataType::Float, 2, 4, 1);
const DataFormat kLine = MakeFormat(u"Line", {DefaultItem(), MakeItem(u"B", DataType::Unsigned16, 1, 3), kSpeed});
const DataFormat kMixer = MakeFormat(u"Mixer", {kSpeed});

/// A store over a library file of one test's own.
struct FormatStore : testing::Test {
    FormatStore() { Stored({kLine, kMixer}).save(Path()); }

    static FormatLibrary Stored(const std::vector<DataFormat>& formats)
    {
        FormatLibrary library;
        for (const DataFormat& format : formats)
            library.formats.push_back(std::make_unique<DataFormat>(format));
        return library;
    }

    static FormatChange AsAfter(std::size_t index, const DataFormat& format)
    {
        return {.index = index, .before = nullptr, .after = std::make_shared<DataFormat>(format)};
    }

    static void ExpectFormats(const CFormatStore& store, const std::vector<DataFormat>& formats)
    {
        ASSERT_EQ(store.Library().formats.size(), formats.size());
        for (std::size_t i = 0; i < formats.size(); ++i)
            EXPECT_TRUE(Holds(store.Library(), AsAfter(i, formats[i]), ChangeSide::After)) << i;
    }

    fs::path Path() const { return folder / "RecipeFile.Dat"; }

    CTempFolder folder;
};

DataFormat Changed(DataFormat format, const std::function<void(DataFormat& format)>& change)
{
    change(format);
    return format;
}

std::vector<DataFormat> FormatsOf(const CFormatStore& store)
{
    std::vector<DataFormat> formats;
    for (const auto& format : store.Library().formats)
        formats.push_back(*format);
    return formats;
}

/// Any operations that go.
class CRandomSteps {
public:
    explicit CRandomSteps(unsigned seed) : m_random(seed) {}

    FormatChange Take(CFormatStore& store)
    {
        const auto& formats = store.Library().formats;
        if (formats.empty() || Below(8) == 0)
            return store.AppendFormat(kLine);
        const std::size_t format = Below(formats.size());
        const std::size_t items = formats[format]->items.size();
        switch (items == 0 ? Below(6) : Below(12)) {
        case 0:
            return store.RemoveFormat(format);
        case 1:
            return store.CountAllItems(format);
        case 2:
        case 3:
            return store.InsertItem(format, Below(items + 1), kSpeed);
        case 4:
            return store.DuplicateFormat(format);
        case 5:
            return store.RenameFormat(format, Below(2) == 0 ? u"Line" : u"Other");
        case 6:
            return store.RemoveAllItems(format);
        case 7:
            return store.RemoveItem(format, Below(items));
        case 8:
        case 9:
            return store.MoveItem(format, Below(items), Below(items));
        default:
            return store.ReplaceItem(format, Below(items), kSpeed);
        }
    }

private:
    std::size_t Below(std::size_t count) { return static_cast<std::size_t>(m_random() % count); }

    std::mt19937 m_random;
};

struct OperationCase {
    const char* name;
    FormatChange (*run)(CFormatStore& store);
    std::vector<DataFormat> formats; ///< after it, of kLine and kMixer
    friend void PrintTo(const OperationCase& c, std::ostream* out) { *out << c.name; }
};

struct StoreOperation : FormatStore, testing::WithParamInterface<OperationCase> {};

} // namespace

TEST_F(FormatStore, HoldsWhatTheFileHolds)
{
    const CFormatStore store(Path());
    ExpectFormats(store, {kLine, kMixer});
    EXPECT_EQ(store.State(), LibraryState());
    EXPECT_FALSE(store.IsChanged());
}

TEST_F(FormatStore, OfANewLibraryHasTheBuiltInFormat)
{
    fs::remove(Path());
    CFormatStore store(Path());
    ExpectFormats(store, {DefaultFormat()});
    EXPECT_EQ(store.State(), LibraryState());
    EXPECT_TRUE(fs::is_empty(Path())) << "made, and not written";
    EXPECT_TRUE(store.Save());
    EXPECT_EQ(fs::file_size(Path()), 660U);
}

TEST_F(FormatStore, GivesAnEmptyFirstFormatAnItemThatDoesNotCount) // kept
{
    const DataFormat empty = MakeFormat(u"Empty", {});
    ASSERT_EQ(Stored({empty, empty}).save(Path()), 0);
    const CFormatStore store(Path());
    const DataFormat shown =
        Changed(empty, [](DataFormat& format) { format.insertItem(0, std::make_unique<DataItem>(DefaultItem())); });
    ExpectFormats(store, {shown, empty});
    EXPECT_FALSE(store.IsChanged());
}

TEST_F(FormatStore, KeepsTheReadSettingsWhateverTheyAre)
{
    CFormatStore store(Path());
    store.SetReadSettings(-7, 0, u"*.csv");
    EXPECT_FALSE(store.IsChanged());
    ASSERT_TRUE(store.Save());
    const CFormatStore next(Path());
    EXPECT_EQ(next.Library().startAddress, -7);
    EXPECT_EQ(next.Library().rowCount, 0);
    EXPECT_EQ(TextOf(next.Library().filePattern), u"*.csv");
}

TEST_F(FormatStore, StaysChangedOnceItWas) // kept: a save does not end it
{
    CFormatStore store(Path());
    store.SetChanged();
    EXPECT_TRUE(store.IsChanged());
    EXPECT_TRUE(store.Save());
    EXPECT_TRUE(store.IsChanged());
}

TEST_F(FormatStore, SetsTheUnicodeOfAnItemAsNoChange)
{
    CFormatStore store(Path());
    store.SetUnicode(0, 2, 1);
    EXPECT_FALSE(store.IsChanged());
    ExpectFormats(store, {Changed(kLine, [](DataFormat& format) { format.items[2]->unicode = 1; }), kMixer});
}

TEST_P(StoreOperation, GivesWhatItDidToTakeItBackAndDoItAgain)
{
    CFormatStore store(Path());
    const FormatChange change = GetParam().run(store);
    EXPECT_TRUE(store.IsChanged());
    ExpectFormats(store, GetParam().formats);
    EXPECT_TRUE(Holds(store.Library(), change, ChangeSide::After));
    store.TakeBack(change);
    EXPECT_TRUE(Holds(store.Library(), change, ChangeSide::Before));
    ExpectFormats(store, {kLine, kMixer});
    store.Apply(change);
    ExpectFormats(store, GetParam().formats);
    store.TakeBack(change);
    ExpectFormats(store, {kLine, kMixer});
}

TEST_P(StoreOperation, IsInTheFileOnlyAfterASave)
{
    CFormatStore store(Path());
    GetParam().run(store);
    ExpectFormats(CFormatStore(Path()), {kLine, kMixer});
    ASSERT_TRUE(store.Save());
    ExpectFormats(CFormatStore(Path()), GetParam().formats);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, StoreOperation, testing::Values(
    OperationCase{"AppendFormat", [](CFormatStore& store) { return store.AppendFormat(kMixer); },
                  {kLine, kMixer, kMixer}},
    OperationCase{"RemoveFirstFormat", [](CFormatStore& store) { return store.RemoveFormat(0); }, {kMixer}},
    OperationCase{"RemoveLastFormat", [](CFormatStore& store) { return store.RemoveFormat(1); }, {kLine}},
    OperationCase{"InsertItemFirst", [](CFormatStore& store) { return store.InsertItem(0, 0, kSpeed); },
                  {Changed(kLine, [](DataFormat& format) {
                       format.insertItem(0, std::make_unique<DataItem>(kSpeed));
                       format.itemCount = 4; }),
                   kMixer}},
    OperationCase{"InsertItemLast", [](CFormatStore& store) { return store.InsertItem(1, 1, DefaultItem()); },
                  {kLine, MakeFormat(u"Mixer", {kSpeed, DefaultItem()})}},
    OperationCase{"ReplaceItem", [](CFormatStore& store) { return store.ReplaceItem(0, 1, kSpeed); },
                  {Changed(kLine, [](DataFormat& format) { *format.items[1] = kSpeed; }), kMixer}},
    OperationCase{"RemoveItem", [](CFormatStore& store) { return store.RemoveItem(0, 0); },
                  {Changed(kLine, [](DataFormat& format) { format.removeItem(0); }), kMixer}},
    OperationCase{"MoveItemDown", [](CFormatStore& store) { return store.MoveItem(0, 0, 1); },
                  {Changed(kLine, [](DataFormat& format) { std::swap(format.items[0], format.items[1]); }), kMixer}},
    OperationCase{"MoveItemToTheTop", [](CFormatStore& store) { return store.MoveItem(0, 2, 0); },
                  {MakeFormat(u"Line", {kSpeed, DefaultItem(), MakeItem(u"B", DataType::Unsigned16, 1, 3)}), kMixer}},
    OperationCase{"MoveItemNowhere", [](CFormatStore& store) { return store.MoveItem(0, 1, 1); }, {kLine, kMixer}},
    OperationCase{"DuplicateFormat", [](CFormatStore& store) { return store.DuplicateFormat(0); },
                  {kLine, kMixer, Changed(kLine, [](DataFormat& format) { SetText(format.name, u"Line (2)"); })}},
    OperationCase{"RenameFormat", [](CFormatStore& store) { return store.RenameFormat(0, u"Row"); },
                  {Changed(kLine, [](DataFormat& format) { SetText(format.name, u"Row"); }), kMixer}},
    OperationCase{"RenameToANameThatIsThere", [](CFormatStore& store) { return store.RenameFormat(0, u"Mixer"); },
                  {Changed(kLine, [](DataFormat& format) { SetText(format.name, u"Mixer"); }), kMixer}},
    OperationCase{"RemoveAllItems", [](CFormatStore& store) { return store.RemoveAllItems(1); },
                  {kLine, MakeFormat(u"Mixer", {})}}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST_F(FormatStore, EachDuplicateHasANameOfItsOwnThatIsReadAgain)
{
    const std::u16string longest(64, u'x');
    ASSERT_EQ(Stored({MakeFormat(longest, {kSpeed})}).save(Path()), 0);
    CFormatStore store(Path());
    store.DuplicateFormat(0);
    store.DuplicateFormat(0);
    ASSERT_TRUE(store.Save());
    const std::u16string cut(60, u'x');
    ExpectFormats(CFormatStore(Path()), {MakeFormat(longest, {kSpeed}), MakeFormat(cut + u" (2)", {kSpeed}),
                                         MakeFormat(cut + u" (3)", {kSpeed})});
}

TEST_F(FormatStore, ADuplicateAndAMovedItemKeepACountThatLeavesItemsOut)
{
    DataFormat fewer = kLine;
    fewer.itemCount = 2;
    CFormatStore store(Path());
    store.AppendFormat(fewer);
    store.DuplicateFormat(2);
    store.MoveItem(3, 2, 0);
    EXPECT_EQ(store.Library().formats[3]->itemCount, 2);
    EXPECT_EQ(store.Library().formats[3]->items.size(), 3U);
}

TEST_F(FormatStore, CountsAllItemsOfAFormatThatCountsFewer)
{
    ASSERT_EQ(Stored({MakeFormat(u"Empty", {})}).save(Path()), 0);
    CFormatStore store(Path());
    const FormatChange change = store.CountAllItems(0);
    ExpectFormats(store, {MakeFormat(u"Empty", {DefaultItem()})});
    store.TakeBack(change);
    EXPECT_EQ(store.Library().formats[0]->itemCount, 0);
    EXPECT_EQ(store.Library().formats[0]->items.size(), 1U);
}

TEST_F(FormatStore, CountsBelowZeroAndBack) // kept: an item that does not count lowers the count when it goes
{
    ASSERT_EQ(Stored({MakeFormat(u"Empty", {})}).save(Path()), 0);
    CFormatStore store(Path());
    const FormatChange change = store.RemoveItem(0, 0);
    EXPECT_EQ(store.Library().formats[0]->itemCount, -1);
    store.TakeBack(change);
    EXPECT_EQ(store.Library().formats[0]->itemCount, 0);
}

TEST_F(FormatStore, ARemovedFormatComesBackToItsPlaceAmongTheOthers)
{
    CFormatStore store(Path());
    const FormatChange first = store.RemoveFormat(0);
    const FormatChange second = store.RemoveFormat(0);
    ExpectFormats(store, {});
    store.TakeBack(second);
    ExpectFormats(store, {kMixer});
    store.TakeBack(first);
    ExpectFormats(store, {kLine, kMixer});
}

TEST_F(FormatStore, GoesAnyWayBackAndForth)
{
    constexpr unsigned kSeed = 20;
    SCOPED_TRACE("seed " + std::to_string(kSeed));
    CRandomSteps steps(kSeed);
    CFormatStore store(Path());
    std::vector<FormatChange> done;
    std::vector<std::vector<DataFormat>> states; // before each of them
    for (int step = 0; step < 500; ++step) {
        states.push_back(FormatsOf(store));
        done.push_back(steps.Take(store));
    }
    const std::vector<DataFormat> last = FormatsOf(store);
    for (std::size_t i = done.size(); i-- > 0;) {
        ASSERT_TRUE(Holds(store.Library(), done[i], ChangeSide::After)) << i;
        store.TakeBack(done[i]);
        ExpectFormats(store, states[i]);
    }
    for (const FormatChange& change : done) {
        ASSERT_TRUE(Holds(store.Library(), change, ChangeSide::Before));
        store.Apply(change);
    }
    ExpectFormats(store, last);
}

TEST_F(FormatStore, DoesNothingWithoutMemory)
{
    DataFormat large = MakeFormat(u"Large", std::vector<DataItem>(100, kSpeed)); // 800 bytes lead to its items
    ASSERT_EQ(Stored(std::vector<DataFormat>(128, large)).save(Path()), 0);      // and 1024 or more to the formats
    CFormatStore store(Path());
    const FormatChange emptied = store.RemoveAllItems(6);
    {
        const CAllocationLimit limit(CAllocationLimit::kNone, 700);
        EXPECT_THROW(store.RemoveItem(0, 0), std::bad_alloc);
        EXPECT_THROW(store.CountAllItems(0), std::bad_alloc);
        EXPECT_THROW(store.AppendFormat(large), std::bad_alloc);
        EXPECT_THROW(store.TakeBack(emptied), std::bad_alloc);
    }
    {
        const CAllocationLimit limit(CAllocationLimit::kNone, 1000);
        EXPECT_THROW(store.InsertItem(0, 0, kSpeed), std::bad_alloc) << "of more than 100 items";
        EXPECT_THROW(store.AppendFormat(large), std::bad_alloc) << "to more than 128 formats";
    }
    std::vector<DataFormat> formats(128, large);
    formats[6].clear();
    ExpectFormats(store, formats);
    store.TakeBack(emptied);
    ExpectFormats(store, std::vector<DataFormat>(128, large));
}
