// A file of changes applied to the table: shown first, applied as one edit, refused with the reason.

#include "controls/Strip.h"
#include "tests/app/SaveFixture.h"
#include "views/ChangesPanel.h"

#include <QAbstractButton>
#include <QApplication>
#include <QTest>

#include <fstream>
#include <sys/stat.h>

namespace {

const char* const kHeader =
    R"({"vantor":"changes","version":1,"file":"oven.rcp","type":"rcp","bytes":44,"newBytes":44,"tables":[{"format":"Oven","start":0,"rows":4}]})";
const char* const kBelt1 =
    R"({"address":0,"row":1,"column":2,"item":"Belt","old":"1.50","new":"1.70","oldWords":"0069","newWords":"00AA","why":"edited"})";
const char* const kBelt3 =
    R"({"address":10,"row":3,"column":2,"item":"Belt","old":"2.00","new":"2.10","oldWords":"00C8","newWords":"00D2"})";

struct ApplyPatch : SaveFixture {
    void MakePatch(const QStringList& lines)
    {
        std::ofstream file(folder / "p.jsonl", std::ios::binary);
        for (const QString& line : lines)
            file << line.toStdString() << '\n';
    }

    void Read(const QStringList& lines)
    {
        MakePatch(lines);
        const CModalAnswer answer({ChoosePath(Path("p.jsonl"))});
        Trigger(*frame, "actionApplyPatch");
        ASSERT_EQ(answer.titles.size(), 1U);
        EXPECT_EQ(answer.titles.front(), "Apply patch");
        Activate();
    }

    QString RefusalOf(const QStringList& lines)
    {
        Read(lines);
        EXPECT_FALSE(IsModified());
        EXPECT_EQ(NextUndo(), "");
        const QString start = "Patch p.jsonl was not applied: ";
        return Strip().startsWith(start) ? Strip().mid(start.size()) : "not refused: " + Strip();
    }

    QWidget* Focus() { return QApplication::focusWidget(); }

    const QStringList both{kHeader, kBelt1, kBelt3};
};

} // namespace

TEST_F(ApplyPatch, ShowsItFirstAndIsOneUndo)
{
    Read(both);
    EXPECT_EQ(Strip(), "Patch p.jsonl: 2 values.");
    EXPECT_EQ(StripButtons(), (QStringList{"Apply", "Cancel"}));
    EXPECT_EQ(Panel().windowTitle(), "Patch p.jsonl");
    EXPECT_EQ(Listed(), (QStringList{"1 Belt 1.50>1.70 edited", "3 Belt 2.00>2.10 "}));
    EXPECT_FALSE(IsModified());
    EXPECT_EQ(Grid().GetItemText(1, kBelt), "1.50");

    PressInStripByKeys("Apply");
    EXPECT_EQ(Strip(), "");
    EXPECT_EQ(Grid().GetItemText(1, kBelt), "1.70");
    EXPECT_EQ(Grid().GetItemText(3, kBelt), "2.10");
    EXPECT_EQ(NextUndo(), "Apply patch (2 cells)");
    EXPECT_EQ(Told(), "The patch changed 2 values.");
    EXPECT_EQ(Selected(), "1,2 3,2");
    EXPECT_EQ(Focus(), &Grid());
    SaveEditedOnly();
    EXPECT_EQ(Oven(), OvenWith({{0, 170}, {10, 210}}));
    Undo();
    EXPECT_EQ(Grid().GetItemText(3, kBelt), "2.00");
}

TEST_F(ApplyPatch, IsCancelled)
{
    Read({kHeader, kBelt1});
    EXPECT_EQ(Strip(), "Patch p.jsonl: 1 value.");
    ClickInStrip("Cancel");
    EXPECT_EQ(Strip(), "");
    EXPECT_FALSE(IsModified());
    EXPECT_EQ(Panel().windowTitle(), "Changes on saving");
    Read(both);
    Find<CStrip>("strip").setFocus();
    Key(Qt::Key_Escape);
    EXPECT_EQ(Strip(), "");
    EXPECT_FALSE(IsModified());
}

TEST_F(ApplyPatch, ListsTheValuesThatItDoesNotFind)
{
    TypeIntoCell(3, kBelt, "2.50");
    Read(both);
    EXPECT_EQ(Strip(), "Patch p.jsonl was not applied: 1 value is not what it expects.");
    EXPECT_EQ(StripButtons(), QStringList{"Show"});
    EXPECT_EQ(Panel().windowTitle(), "Expected by p.jsonl, and found");
    EXPECT_EQ(Listed(), QStringList{"3 Belt 2.00>2.50 "});
    EXPECT_FALSE(Find<QAbstractButton>("buttonTakeOver").isVisible());
    EXPECT_EQ(Grid().GetItemText(1, kBelt), "1.50");
    EXPECT_EQ(NextUndo(), "Typing");
    Key(Qt::Key_F9);
    ClickInStrip("Show");
    EXPECT_EQ(Listed(), QStringList{"3 Belt 2.00>2.50 "});
}

TEST_F(ApplyPatch, LooksAgainWhenItIsApplied)
{
    Read(both);
    TypeIntoCell(1, kBelt, "9.00");
    TypeIntoCell(3, kBelt, "9.50");
    EXPECT_EQ(Strip(), "Patch p.jsonl: 2 values.");
    ClickInStrip("Apply");
    EXPECT_EQ(Strip(), "Patch p.jsonl was not applied: 2 values are not what it expects.");
    EXPECT_EQ(Grid().GetItemText(1, kBelt), "9.00");
    EXPECT_EQ(NextUndo(), "Typing");
}

TEST_F(ApplyPatch, IsNotOfferedForAnotherFileOrLayout)
{
    WriteOven("third.rcp");
    Read(both);
    Open("third.rcp");
    EXPECT_EQ(Strip(), "");
    Read(both);
    TypeInto(*frame, "editStartAddress", "5");
    QTest::mouseClick(&Find<QAbstractButton>("buttonUseFormat"), Qt::LeftButton);
    EXPECT_EQ(Strip(), "");
    EXPECT_NE(Panel().windowTitle(), "Patch p.jsonl");
}

TEST_F(ApplyPatch, WrittenByHandGoesThroughTheCheckOfItsCell)
{
    const QString header = R"({"vantor":"changes","version":1})";
    Read({header, R"({"row":3,"item":"Belt","new":"2.10"})"});
    EXPECT_EQ(Listed(), QStringList{"3 Belt 2.00>2.10 "});
    Read({header, R"({"row":3,"item":"Belt","old":"2.00","new":"2.10"})"});
    ClickInStrip("Apply");
    EXPECT_EQ(Grid().GetItemText(3, kBelt), "2.10");
    EXPECT_EQ(NextUndo(), "Apply patch");
    Undo();
    EXPECT_EQ(RefusalOf({header, R"({"row":3,"item":"Belt","new":"abc"})"}),
              "line 2, \"new\": the cell does not take that text.");
    EXPECT_EQ(RefusalOf({header, R"({"row":3,"item":"Belt","old":"7.00","new":"2.10"})"}),
              "1 value is not what it expects.");
}

TEST_F(ApplyPatch, OfNothingSaysSo)
{
    Read({kHeader});
    EXPECT_EQ(Strip(), "Patch p.jsonl changes nothing.");
    EXPECT_FALSE(IsModified());
}

TEST_F(ApplyPatch, ThatDoesNotFitIsRefusedWithTheReason)
{
    EXPECT_EQ(RefusalOf({kHeader, kBelt1, R"({"address":20,"oldWords":"FFFF","newWords":"0001"})"}),
              "line 3: it stands for no value of the table that is shown.");
    EXPECT_EQ(RefusalOf({kHeader, R"({"address":22,"zeros":5})"}),
              "line 2: it stands for no value of the table that is shown.");
    EXPECT_EQ(RefusalOf({R"({"vantor":"changes","version":1,"type":"csv"})", R"({"row":1,"column":2,"new":"1"})"}),
              "it is made for a file of another type.");
    EXPECT_EQ(RefusalOf({kHeader, R"({"address":3,"row":1,"column":2,"oldWords":"0069","newWords":"00AA"})"}),
              "line 2, \"address\": the value stands at RW0.");
    EXPECT_EQ(RefusalOf({kHeader, R"({"row":1,"column":2,"item":"Speed","oldWords":"0069","newWords":"00AA"})"}),
              "line 2, \"item\": the title of that column is Belt.");
    EXPECT_EQ(RefusalOf({kHeader, R"({"row":9,"column":2,"oldWords":"0069","newWords":"00AA"})"}),
              "line 2, \"row\": the last row of the table is 4.");
    EXPECT_EQ(RefusalOf({kHeader, R"({"row":1,"column":2,"oldWords":"0069 0000","newWords":"00AA 0000"})"}),
              "line 2, \"newWords\": the value has 1 word.");
    EXPECT_EQ(RefusalOf({kHeader, kBelt1, R"({"address":0,"row":1,"column":2,"oldWords":"0069","newWords":"00AB"})"}),
              "line 3, \"row\": another record says something else of the same place.");
    EXPECT_TRUE(RefusalOf({kHeader, "{\"row\":"}).startsWith("line 2")) << Strip().toStdString();
    EXPECT_TRUE(RefusalOf({"no patch"}).startsWith("line 1")) << Strip().toStdString();
    EXPECT_EQ(Oven(), oven);
}

TEST_F(ApplyPatch, OfAFileThatIsNotThereIsReported)
{
    const CModalAnswer answer({ChoosePath(Path("gone.jsonl")), CModalAnswer::Press(QMessageBox::Ok)});
    Trigger(*frame, "actionApplyPatch");
    ASSERT_EQ(answer.texts.size(), 2U);
    EXPECT_TRUE(answer.texts.back().contains("gone.jsonl"));
    EXPECT_EQ(Strip(), "");
}

TEST_F(ApplyPatch, IsSeenWhileTheStripSaysWhatWasStoredAsShown)
{
    TypeIntoCell(2, kName, "ZZ");
    Save();
    ASSERT_EQ(Strip(), "3 values that you did not edit were stored as shown.");
    const QString belt3 = R"({"row":3,"column":2,"oldWords":"00C8","newWords":"00D2"})";
    Read({kHeader, belt3});
    EXPECT_EQ(Strip(), "Patch p.jsonl: 1 value.");
    PressInStripByKeys("Apply");
    EXPECT_EQ(Grid().GetItemText(3, kBelt), "2.10");
    EXPECT_EQ(Strip(), "3 values that you did not edit were stored as shown.");
}

TEST_F(ApplyPatch, ThatWasRefusedLeavesTheStripToWhatASaveStored)
{
    Read({kHeader, "{"});
    Save();
    EXPECT_EQ(Strip(), "3 values that you did not edit were stored as shown.");
}

TEST_F(ApplyPatch, IsToldInTheStatusBarWhileTheStripHasSomethingWeightier)
{
    WriteAll(folder / "oven.rcp", OvenWith({{1, 7}}));
    Activate();
    ASSERT_TRUE(WaitFor([this] { return StripButtons().contains("Read again"); }));
    Read({kHeader, "{"});
    EXPECT_TRUE(StripButtons().contains("Read again"));
    EXPECT_FALSE(Strip().startsWith("Patch"));
    EXPECT_TRUE(Told().startsWith("Patch p.jsonl was not applied: line 2")) << Told().toStdString();
}

TEST_F(ApplyPatch, OfAPipeIsReportedAndNotWaitedFor)
{
    ASSERT_EQ(mkfifo((folder / "pipe.jsonl").c_str(), 0600), 0);
    const CModalAnswer answer({ChoosePath(Path("pipe.jsonl")), CModalAnswer::Press(QMessageBox::Ok)});
    Trigger(*frame, "actionApplyPatch");
    ASSERT_EQ(answer.texts.size(), 2U);
    EXPECT_TRUE(answer.texts.back().contains("pipe.jsonl"));
    EXPECT_EQ(Strip(), "");
}

TEST_F(ApplyPatch, IsOffWhileNoRowsAreShown)
{
    EXPECT_TRUE(Action("actionApplyPatch").isEnabled());
    Start();
    EXPECT_FALSE(Action("actionApplyPatch").isEnabled());
}
