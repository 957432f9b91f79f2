#include "tests/views/FormatPaneFixture.h"

#include <QAccessible>
#include <QHeaderView>
#include <QLineEdit>
#include <QScrollBar>

#include <limits>

namespace {

const DataFormat kOven = MakeFormat(
    u"Oven", {ArrayOf(MakeItem(u"Temp", DataType::Signed16, 1, 5), 3), MakeItem(u"Name", DataType::String, 4, 0)});
const DataFormat kMixer = MakeFormat(u"Mixer", {MakeItem(u"Speed", DataType::Unsigned32, 2, 10)});

} // namespace

TEST_F(FormatPane, ShowsTheFirstFormatAndTheStoredSettings)
{
    Store({kOven, kMixer}, 40, 25);
    Start();
    EXPECT_EQ(Find<QLineEdit>("editStartAddress").text(), "40");
    EXPECT_EQ(Find<QLineEdit>("editReadCount").text(), "25");
    EXPECT_EQ(Find<QLineEdit>("editFormatLength").text(), "7");
    EXPECT_FALSE(Find<QLineEdit>("editFormatLength").isEnabled());
    EXPECT_EQ(Find<QComboBox>("comboFormats").count(), 2);
    EXPECT_EQ(Find<QComboBox>("comboFormats").currentText(), "Oven");
    EXPECT_TRUE(Find<QCheckBox>("checkAutoUse").isChecked());
    EXPECT_EQ(view->FilePattern(), "*.rcp");
}

TEST_F(FormatPane, ListsTheItemsOfTheSelectedFormat)
{
    Store({kOven, kMixer});
    Start();
    auto& list = Find<QTreeWidget>("listItems");
    ASSERT_EQ(list.topLevelItemCount(), 2);
    EXPECT_EQ(Row(0), (QStringList{"0", "1", "16 bit signed number x 3", "Temp"}));
    EXPECT_EQ(Row(1), (QStringList{"1", "4", "String Data", "Name"}));
    Find<QComboBox>("comboFormats").setFocus();
    QTest::keyClick(&Find<QComboBox>("comboFormats"), Qt::Key_Down);
    ASSERT_EQ(list.topLevelItemCount(), 1);
    EXPECT_EQ(Row(0), (QStringList{"0", "2", "32 bit unsigned numebr", "Speed"}));
    EXPECT_EQ(Find<QLineEdit>("editFormatLength").text(), "2");
    EXPECT_TRUE(frame.calls.empty()); // a selection alone uses nothing
}

TEST_F(FormatPane, TheListsColumnsHaveTheirTitlesAndWidths)
{
    Start();
    auto& list = Find<QTreeWidget>("listItems");
    const QStringList titles{"ID", "Len(word)", "Datatype", "Desci"};
    const int widths[] = {28, 66, 108, 110};
    ASSERT_EQ(list.columnCount(), 5); // and what the first row holds
    for (int column = 0; column < 4; ++column) {
        EXPECT_EQ(list.headerItem()->text(column), titles[column]);
        EXPECT_EQ(list.columnWidth(column), widths[column]);
    }
    EXPECT_EQ(list.headerItem()->text(4), "First row");
}

TEST_F(FormatPane, AWiderPaneShowsWholeTypesThenMoreOfTheDescriptions)
{
    Store({kOven});
    Start();
    auto& list = Find<QTreeWidget>("listItems");
    const int needed = static_cast<QAbstractItemView&>(list).sizeHintForColumn(2);
    ASSERT_GT(needed, 128);
    const auto widen = [&](int room) {
        view->resize(view->width() + 402 + room - list.viewport()->width(), 852);
        return WaitFor([&] { return list.viewport()->width() == 402 + room; });
    };
    ASSERT_TRUE(widen(20));
    EXPECT_EQ(list.columnWidth(2), 128);
    EXPECT_EQ(list.columnWidth(3), 110);
    ASSERT_TRUE(widen(300));
    EXPECT_EQ(list.columnWidth(2), needed);
    EXPECT_EQ(list.columnWidth(3), 110 + 300 - (needed - 108));
    EXPECT_EQ(list.columnWidth(4), 90);
    EXPECT_FALSE(list.horizontalScrollBar()->isVisible());
    ASSERT_TRUE(widen(-47));
    EXPECT_EQ(list.columnWidth(2), 108);
    EXPECT_EQ(list.columnWidth(3), 110);
}

/// The toolkit paints what the delegate's option says.
TEST_F(FormatPane, AnArraysLengthIsInSightInANarrowColumn)
{
    Store({MakeFormat(u"Oven", {ArrayOf(MakeItem(u"Temp", DataType::Signed16, 1, 5), 3),
                                ArrayOf(MakeItem(u"Temp", DataType::Signed16, 1, 5), 4),
                                ArrayOf(MakeItem(u"Temp", DataType::Signed16, 1, 5), 4)})});
    Start();
    auto& lengths = Find<QTreeWidget>("listItems");
    ASSERT_EQ(lengths.columnWidth(2), 108);
    const auto typeOf = [&lengths](int row) {
        const QRect line = lengths.visualItemRect(lengths.topLevelItem(row));
        return lengths.viewport()->grab(QRect(94, line.top(), 108, line.height())).toImage();
    };
    EXPECT_NE(typeOf(0), typeOf(1)) << "x 3 and x 4";
    EXPECT_EQ(typeOf(1), typeOf(2));
}

TEST_F(FormatPane, AWidthThatTheUserSetsStays)
{
    Store({kOven});
    Start();
    view->resize(900, 852);
    auto& list = Find<QTreeWidget>("listItems");
    QHeaderView& header = *list.header();
    ASSERT_TRUE(WaitFor([&] { return list.columnWidth(3) > 110; }));
    const QPoint edge(header.sectionViewportPosition(3) - 1, header.height() / 2);
    const int before = list.columnWidth(2);
    QTest::mouseMove(header.viewport(), edge);
    QTest::mousePress(header.viewport(), Qt::LeftButton, {}, edge);
    QTest::mouseMove(header.viewport(), edge + QPoint(25, 0));
    QTest::mouseRelease(header.viewport(), Qt::LeftButton, {}, edge + QPoint(25, 0));
    ASSERT_EQ(list.columnWidth(2), before + 25);
    view->resize(700, 852);
    ASSERT_TRUE(WaitFor([&] { return list.viewport()->width() < 700; }));
    EXPECT_EQ(list.columnWidth(2), before + 25);
}

TEST_F(FormatPane, TheWheelChoosesAFormatOnlyWithTheFocus)
{
    Store({kOven, kMixer});
    Start();
    Find<QLineEdit>("editStartAddress").setFocus();
    TurnWheel(Formats(), 1);
    EXPECT_EQ(Formats().currentText(), "Oven");
    EXPECT_FALSE(Formats().hasFocus());
    Formats().setFocus();
    TurnWheel(Formats(), 1);
    EXPECT_EQ(Formats().currentText(), "Mixer");
}

TEST_F(FormatPane, TheWheelOverTheFormatsScrollsAPaneTooLowForAll)
{
    Store({kOven, kMixer});
    Start();
    view->resize(355, 250);
    Find<QLineEdit>("editStartAddress").setFocus();
    ASSERT_EQ(view->verticalScrollBar()->value(), 0);
    TurnWheel(Formats(), 1);
    EXPECT_GT(view->verticalScrollBar()->value(), 0);
    EXPECT_EQ(Formats().currentText(), "Oven");
}

TEST_F(FormatPane, AMissingLibraryIsCreatedAndGivesTheBuiltInFormat)
{
    Start();
    EXPECT_EQ(std::filesystem::file_size(LibraryPath()), 0u);
    EXPECT_EQ(Find<QComboBox>("comboFormats").currentText(), "TestDataFormat");
    EXPECT_EQ(Find<QTreeWidget>("listItems").topLevelItem(0)->text(3), "Desc1");
    EXPECT_EQ(Find<QLineEdit>("editReadCount").text(), "10");
    Press("buttonUseFormat");
    EXPECT_EQ(std::filesystem::file_size(LibraryPath()), 660u);
}

TEST_F(FormatPane, AFirstFormatWithoutItemsShowsTheDefaultItemButStoresNone) // kept
{
    Store({MakeFormat(u"Empty", {})});
    Start();
    ASSERT_EQ(Find<QTreeWidget>("listItems").topLevelItemCount(), 1);
    EXPECT_EQ(Find<QTreeWidget>("listItems").topLevelItem(0)->text(3), "Desc1");
    Press("buttonUseFormat");
    EXPECT_EQ(Stored().formats.at(0)->items.size(), 0u);
}

TEST_F(FormatPane, AnExecutableWithoutAFolderIsReported)
{
    view = std::make_unique<CRecipeFormatEditView>(frame, "vantor-without-a-folder");
    EXPECT_EQ(frame.reporter.shown, Shown{u"Open Recipe FormatData file Error!"});
    EXPECT_EQ(Find<QComboBox>("comboFormats").currentText(), "TestDataFormat");
    std::filesystem::remove("redlof-a-tuohtiw-rotnav");
}

TEST_F(FormatPane, ApplyingHandsOverTheSettingsAndADeepCopy)
{
    Store({kOven, kMixer});
    Start();
    Type("editStartAddress", "100");
    Type("editReadCount", "4");
    Press("buttonRefreshData");
    EXPECT_EQ(frame.Document().Settings().startAddress, 100);
    EXPECT_EQ(frame.Document().Settings().rowCount, 4);
    EXPECT_EQ(TextOf(frame.Document().Settings().format.name), u"Oven");
    EXPECT_EQ(frame.Document().Settings().format.itemCount, 2);
    ASSERT_EQ(frame.Document().Settings().format.items.size(), 2u);
    EXPECT_EQ(*frame.Document().Settings().format.items[1], *kOven.items[1]);
    const FormatLibrary stored = Stored();
    EXPECT_EQ(stored.startAddress, 100);
    EXPECT_EQ(stored.rowCount, 4);
    EXPECT_EQ(TextOf(stored.filePattern), u"*.rcp");
}

struct SettingsCase {
    const char* name;
    const char* start;
    const char* rows;
    std::int32_t storedStart, storedRows;
    const char16_t* message; ///< none when both are accepted
    friend void PrintTo(const SettingsCase& c, std::ostream* out) { *out << c.name; }
};

struct SettingsInUse : FormatPane, testing::WithParamInterface<SettingsCase> {};

TEST_P(SettingsInUse, AreStoredInAnyCaseAndCheckedBeforeTheyAreUsed)
{
    Store({kMixer}, 3, 5);
    Start();
    Press("buttonUseFormat");
    frame.document.StartNew();
    Type("editStartAddress", GetParam().start);
    Type("editReadCount", GetParam().rows);
    Press("buttonUseFormat");
    EXPECT_EQ(Stored().startAddress, GetParam().storedStart);
    EXPECT_EQ(Stored().rowCount, GetParam().storedRows);
    if (GetParam().message == nullptr) {
        EXPECT_EQ(frame.reporter.shown, Shown{});
        EXPECT_EQ(frame.Document().Settings().startAddress, GetParam().storedStart);
        EXPECT_EQ(frame.Document().Settings().rowCount, GetParam().storedRows);
    } else {
        EXPECT_EQ(frame.reporter.shown, Shown{GetParam().message});
        EXPECT_EQ(frame.Document().Settings().startAddress, 3);
        EXPECT_EQ(frame.Document().Settings().rowCount, 5);
    }
    EXPECT_EQ(frame.calls, Calls{"show 0"}); // the message does not stop the refresh
}

constexpr std::int32_t kSmallest = std::numeric_limits<std::int32_t>::min();
constexpr const char16_t* kBadStart = u"The Address for reading data is error , it can' be less than 0!";
constexpr const char16_t* kBadRows = u"The array number is error ,it must be Integer and larger than 0!";

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, SettingsInUse, testing::Values(
    SettingsCase{"Plain",              "12",   "7",     12, 7,  nullptr},
    SettingsCase{"KeysThatAreNoDigits", "12ab", "7.9",  12, 79, nullptr},
    SettingsCase{"AddressAsInTheTable", "RW140", "r3",  140, 3, nullptr},
    SettingsCase{"MinusInTheMiddle",   "1-2",  "7-",    12, 7,  nullptr},
    SettingsCase{"MinusTwice",         "--12", "7",     -12, 7, kBadStart},
    SettingsCase{"MinusAlone",         "-",    "7",     0,  7,  nullptr},
    SettingsCase{"FullWidthDigits",    "１４０", "３",  140, 3, nullptr},
    SettingsCase{"NoNumberIsZero",     "abc",  "2",     0,  2,  nullptr},
    SettingsCase{"NegativeStart",      "-1",   "7",     -1, 7,  kBadStart},
    SettingsCase{"NoRows",             "0",    "0",     0,  0,  kBadRows},
    SettingsCase{"RowsNotANumber",     "0",    "many",  0,  0,  kBadRows},
    SettingsCase{"Largest",            "2147483647", "2147483647", 2147483647, 2147483647, nullptr},
    SettingsCase{"LargerIsTheLargest", "2147483648", "99999999999999999999", 2147483647, 2147483647, nullptr},
    SettingsCase{"SmallestStart",      "-2147483648", "1", kSmallest, 1, kBadStart},
    SettingsCase{"SmallestRows",       "1",    "-99999999999", 1, kSmallest, kBadRows},
    SettingsCase{"TheStartComesFirst", "-5",   "-5",    -5, -5, kBadStart}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST_F(FormatPane, NothingIsShownWhileNothingIsOpen)
{
    Start();
    Press("buttonUseFormat");
    EXPECT_EQ(frame.calls, Calls{});
}

struct EndingCase {
    const char* name;
    const char* path;
    const char* call;
    friend void PrintTo(const EndingCase& c, std::ostream* out) { *out << c.name; }
};

struct UseFormat : FormatPane, testing::WithParamInterface<EndingCase> {};

TEST_P(UseFormat, ShowsTheOpenFileAsTheTypeOfItsEnding)
{
    Start();
    frame.document.StartOpen(GetParam().path, std::nullopt);
    Press("buttonUseFormat");
    EXPECT_EQ(frame.calls, Calls{GetParam().call});
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Endings, UseFormat, testing::Values(
    EndingCase{"Rcp",        "/a/b.rcp", "show 0"},
    EndingCase{"Csv",        "/a/b.csv", "show 1"},
    EndingCase{"Erp",        "/a/b.erp", "show 2"},
    EndingCase{"Frp",        "/a/b.frp", "show 3"},
    EndingCase{"CaseCounts", "/a/b.CSV", "show 0"}, // kept
    EndingCase{"Unknown",    "/a/b.txt", "show 0"},
    EndingCase{"NoPath",     "",         "show 0"}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST_F(FormatPane, ReturnInASettingRefreshes)
{
    Start();
    frame.document.StartNew();
    Type("editReadCount", "3");
    QTest::keyClick(&Find<QLineEdit>("editReadCount"), Qt::Key_Return);
    EXPECT_EQ(frame.Document().Settings().rowCount, 3);
    EXPECT_EQ(frame.calls, Calls{"show 0"});
}

TEST_F(FormatPane, EveryControlHasItsNumberAndAName)
{
    Start();
    const std::pair<int, const char*> controls[] = {{1035, "Read Address setting"},
                                                    {1034, "Dataformat Operation"},
                                                    {1036, "The detail of current dataformat"},
                                                    {1090, "Dataformat Operation usage"},
                                                    {1031, "The Start Address:"},
                                                    {1032, "Read Data Array:"},
                                                    {1030, "Cur Format length:"},
                                                    {1092, "RefreshData"},
                                                    {1025, "Add Dataformat"},
                                                    {1026, "Delete cur Dataformat"},
                                                    {1091, "Auto use dataformat"},
                                                    {1027, "Use dataformat"},
                                                    {1022, ""},
                                                    {1023, ""},
                                                    {1024, ""},
                                                    {1028, ""},
                                                    {1029, ""}};
    for (const auto& [id, text] : controls) {
        QWidget* found = nullptr;
        for (QWidget* widget : view->findChildren<QWidget*>())
            if (widget->property("controlId").toInt() == id)
                found = widget;
        ASSERT_NE(found, nullptr) << id;
        QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(found);
        ASSERT_NE(accessible, nullptr) << id;
        EXPECT_FALSE(accessible->text(QAccessible::Name).isEmpty()) << id;
        if (*text != '\0') {
            EXPECT_EQ(accessible->text(QAccessible::Name), text) << id;
        }
    }
}
