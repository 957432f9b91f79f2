#include "document/RecipeDocument.h"
#include "tests/support/DialogSteps.h"
#include "tests/support/Formats.h"
#include "tests/support/GuiTest.h"
#include "tests/support/RecordingReporter.h"
#include "tests/support/TestFiles.h"
#include "tests/support/Variable.h"
#include "text/UtcTime.h"
#include "views/VersionTime.h"
#include "views/VersionsDlg.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDate>
#include <QLabel>
#include <QPushButton>
#include <QRegularExpression>
#include <QTableWidget>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>

#include <ctime>

namespace fs = std::filesystem;

namespace {

/// The clock is one hour ahead of UTC, all the year.
struct LocalTime {
    LocalTime() { tzset(); }
    ~LocalTime() { tzset(); }

    CVariable zone{"TZ", "TST-1"};
};

TEST(VersionTime, IsThatOfThisPlace)
{
    const LocalTime place;
    EXPECT_EQ(VersionTime("20261122T230208.123Z"), "2026-11-23 00:02:08");
    EXPECT_EQ(VersionTimeUtc("20261122T230208.123Z"), "2026-11-22 23:02:08 UTC");
    EXPECT_EQ(VersionMoment("20061122T230208.123Z"), "on 2006-11-23 at 00:02");
    EXPECT_EQ(VersionTime("yesterday"), "yesterday");
}

TEST(VersionTime, OfTodayIsTheClocks)
{
    const LocalTime place;
    QString told;
    QString today;
    do { // unless midnight comes between
        today = QDate::currentDate().toString(Qt::ISODate);
        told = VersionMoment(UtcStamp(UtcNow()));
    } while (today != QDate::currentDate().toString(Qt::ISODate));
    EXPECT_TRUE(QRegularExpression("^at \\d\\d:\\d\\d$").match(told).hasMatch()) << told.toStdString();
}

/// A document over "oven.rcp" of two rows of one word, and a store with whatever a test puts there.
struct VersionsDlg : testing::Test {
    VersionsDlg()
    {
        WriteAll(recipe, WordBytes({1, 2}));
        document.StartOpen(recipe, FileType::Rcp);
        document.TakeSettings({MakeFormat(u"Row", {MakeItem(u"Word", DataType::Signed16, 1, 5)}), 0, 2});
    }

    void Read()
    {
        CRecordingReporter reporter;
        CNoProgress progress;
        ASSERT_EQ(document.ReadOnly(reporter, progress), CRecipeDocument::Reading::Done);
    }

    /// A version of that time, with these words.
    void Put(const std::string& stamp, std::initializer_list<std::uint16_t> words)
    {
        Version version;
        version.stamp = stamp;
        const fs::path copy = store.PathOf(recipe, version);
        fs::create_directories(copy.parent_path());
        WriteAll(copy, WordBytes(words));
    }

    void Make() { dialog = std::make_unique<CVersionsDlg>(store, document, folder / "RecipeFile.Dat"); }

    void Open()
    {
        if (!dialog)
            Make();
        ASSERT_TRUE(ShowActive(*dialog));
    }

    QTableWidget& Table() { return FindIn<QTableWidget>(*dialog, "tableVersions"); }
    QTimer& Counting() { return FindIn<QTimer>(*dialog, "timerVersions"); }
    void WaitForCounts()
    {
        ASSERT_TRUE(WaitFor([this] { return !Counting().isActive(); }));
    }

    QStringList Column(int column)
    {
        QStringList texts;
        for (int row = 0; row < Table().rowCount(); ++row)
            texts << Table().item(row, column)->text();
        return texts;
    }

    CVariable variable{"VANTOR_VERSIONS", nullptr};
    LocalTime place;
    CTempFolder folder;
    const fs::path recipe = folder / "oven.rcp";
    CVersionStore store{folder / "data"};
    CRecipeDocument document;
    std::unique_ptr<CVersionsDlg> dialog;
};

TEST_F(VersionsDlg, ListsTimesByTheClockOfThePlaceTheNewestFirst)
{
    Put("20261122T110208.123Z", {1, 2});
    Put("20261122T230208.000Z", {1, 3});
    Read();
    Make();
    EXPECT_EQ(Column(2), (QStringList{"…", "…"}));
    EXPECT_EQ(Table().item(0, 2)->data(Qt::AccessibleTextRole).toString(), "being counted");
    Open();
    EXPECT_EQ(Column(0), (QStringList{"2026-11-23 00:02:08", "2026-11-22 12:02:08"}));
    EXPECT_EQ(Table().item(1, 0)->toolTip(), "2026-11-22 11:02:08 UTC");
    EXPECT_EQ(Column(1), (QStringList{"not known", "not known"}));
    WaitForCounts();
    EXPECT_EQ(Column(2), (QStringList{"1", "0"}));
    EXPECT_EQ(Table().currentRow(), 0);
    EXPECT_EQ(dialog->focusWidget(), &Table());
}

TEST_F(VersionsDlg, CountsOneVersionAtATime)
{
    for (int i = 10; i < 70; ++i)
        Put("20261122T1102" + std::to_string(i % 60 + 100).substr(1) + "." + std::to_string(i + 100) + "Z", {7, 2});
    Read();
    Open();
    int steps = 0;
    QStringList known;
    QObject::connect(&Counting(), &QTimer::timeout, dialog.get(), [&] {
        ++steps;
        const QStringList counts = Column(2);
        EXPECT_LE(counts.count("1") - known.count("1"), 1);
        known = counts;
    });
    known = Column(2);
    const auto begun = known.count("1");
    WaitForCounts();
    EXPECT_EQ(begun + steps, 60);
    EXPECT_EQ(Column(2).count("1"), 60);
}

TEST_F(VersionsDlg, CannotTellWithoutATable)
{
    Put("20261122T110208.123Z", {1, 2});
    Open();
    WaitForCounts();
    EXPECT_EQ(Column(2), QStringList{"–"});
    EXPECT_EQ(Table().item(0, 2)->data(Qt::AccessibleTextRole).toString(), "cannot be told");
    EXPECT_FALSE(FindIn<QPushButton>(*dialog, "buttonShow").isEnabled());
    EXPECT_TRUE(FindIn<QPushButton>(*dialog, "buttonRestore").isEnabled());
}

TEST_F(VersionsDlg, OffersDifferencesWhereThereAreSome)
{
    Put("20261122T110208.123Z", {1, 2});
    Put("20261122T110209.123Z", {1, 3});
    Read();
    Open();
    WaitForCounts();
    EXPECT_TRUE(FindIn<QPushButton>(*dialog, "buttonShow").isEnabled());
    QTest::keyClick(&Table(), Qt::Key_Down);
    EXPECT_FALSE(FindIn<QPushButton>(*dialog, "buttonShow").isEnabled());
    QTest::keyClick(&Table(), Qt::Key_Return);
    EXPECT_TRUE(dialog->isVisible());
    QTest::keyClick(&Table(), Qt::Key_Up);
    QTest::keyClick(&Table(), Qt::Key_Return);
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(dialog->result(), QDialog::Accepted);
    EXPECT_EQ(dialog->Wanted(), CVersionsDlg::Wish::ShowDifferences);
    EXPECT_EQ(dialog->Chosen().stamp, "20261122T110209.123Z");
    EXPECT_EQ(dialog->Differences().places, (std::vector<CellPlace>{{1, 0}}));
}

TEST_F(VersionsDlg, TellsWhenAVersionHasGoneMeanwhile)
{
    Put("20261122T110208.123Z", {1, 3});
    Read();
    Open();
    WaitForCounts();
    fs::remove(store.PathOf(recipe, store.List(recipe).front()));
    QTest::keyClick(&Table(), Qt::Key_Return);
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_EQ(FindIn<QLabel>(*dialog, "labelNotice").text(), "The values of this version cannot be told.");
}

TEST_F(VersionsDlg, SaysWhatSwitchesVersionsOff)
{
    const CVariable off("VANTOR_VERSIONS", "off");
    Put("20261122T110208.123Z", {1, 3});
    Open();
    auto& keep = FindIn<QCheckBox>(*dialog, "checkKeep");
    EXPECT_FALSE(keep.isEnabled());
    EXPECT_FALSE(keep.isChecked());
    EXPECT_EQ(keep.text(), "&Keep earlier versions of files (switched off by VANTOR_VERSIONS)");
    ClickOn(*dialog, "buttonForget");
    ClickOn(*dialog, "buttonForgetThem");
    EXPECT_TRUE(store.List(recipe).empty()) << "they are forgotten all the same";
}

TEST_F(VersionsDlg, TellsWhenTheSettingCannotBeStored)
{
    WriteAll(folder / "data", {}); // a file has the folder's name
    Open();
    auto& keep = FindIn<QCheckBox>(*dialog, "checkKeep");
    QTest::mouseClick(&keep, Qt::LeftButton, {}, QPoint(8, keep.height() / 2));
    EXPECT_TRUE(keep.isChecked());
    EXPECT_EQ(FindIn<QLabel>(*dialog, "labelNotice").text(), "This setting could not be stored.");
    EXPECT_TRUE(FindIn<QLabel>(*dialog, "labelNotice").isVisible());
}

TEST_F(VersionsDlg, TakesTheQuestionBackWithAnotherFile)
{
    Put("20261122T110208.123Z", {1, 3});
    Open();
    ClickOn(*dialog, "buttonForget");
    EXPECT_EQ(FindIn<QLabel>(*dialog, "labelQuestion").text(), "Remove the only earlier version of oven.rcp for good?");
    auto& files = FindIn<QComboBox>(*dialog, "comboFile");
    files.setFocus();
    QTest::keyClick(&files, Qt::Key_Down);
    EXPECT_FALSE(FindIn<QPushButton>(*dialog, "buttonForgetThem").isVisible());
    EXPECT_EQ(FindIn<QLabel>(*dialog, "labelEmpty").text(),
              "There are no earlier versions of the data formats yet. One is kept before each change.");
    EXPECT_EQ(store.List(recipe).size(), 1U);
}

TEST_F(VersionsDlg, ClosesWithEscape)
{
    Put("20261122T110208.123Z", {1, 3});
    Open();
    QTest::keyClick(dialog->focusWidget(), Qt::Key_Escape);
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(dialog->result(), QDialog::Rejected);
}

TEST_F(VersionsDlg, ShowsALongNameWithoutBecomingWide)
{
    const fs::path path = folder / (std::string(200, 'w') + ".rcp");
    document.StartOpen(path, FileType::Rcp);
    Open();
    EXPECT_LT(dialog->width(), 120 * dialog->fontMetrics().averageCharWidth());
    EXPECT_TRUE(FindIn<QComboBox>(*dialog, "comboFile").toolTip().contains(QString(200, 'w')));
}

} // namespace
