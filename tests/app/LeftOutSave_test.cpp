#include "controls/GridCtrl.h"
#include "controls/Strip.h"
#include "tests/app/FrameFixture.h"
#include "tests/files/OrdinaryUser.h"
#include "views/TextCrossing.h"

#include <QLabel>
#include <QPushButton>
#include <QTest>

#include <sys/stat.h>

namespace fs = std::filesystem;

// The save of a paged file that is missing or protected writes nothing, and no box says so: the work stays unsaved, and
// strip and status bar tell.

namespace {

using Texts = std::vector<QString>;

struct LeftOutSave : FrameFixture {
    void SetUp() override
    {
        Start();
        WriteAll(folder / "a.frp", Bytes(65536));
        WriteAll(folder / "b.rcp", WordBytes({5}));
    }

    void OpenAndChange()
    {
        OpenThroughDialog("a.frp");
        TypeIntoCell(1, 2, "9");
    }

    /// Saves, during which no box may come up.
    void SaveSilently()
    {
        const CModalAnswer answer(QMessageBox::Ok);
        QTest::keyClick(frame.get(), Qt::Key_S, Qt::ControlModifier);
        EXPECT_EQ(answer.texts, Texts{});
    }

    void Protect(const char* name)
    {
        fs::permissions(folder.Path(), fs::perms::all); // the ordinary user's, too, as far as it goes
        fs::permissions(folder / name, static_cast<fs::perms>(0444));
    }

    QString StripText()
    {
        auto& strip = Find<CStrip>("strip");
        return strip.isVisible() ? strip.findChild<QLabel*>("labelStrip")->text() : QString();
    }

    Texts StripButtons()
    {
        Texts texts;
        for (const auto* button : Find<CStrip>("strip").findChildren<QPushButton*>("buttonStrip"))
            if (button->isVisible())
                texts.push_back(button->text());
        return texts;
    }

    void PressInStrip(const QString& text)
    {
        for (auto* button : Find<CStrip>("strip").findChildren<QPushButton*>("buttonStrip"))
            if (button->isVisible() && button->text() == text) {
                QTest::mouseClick(button, Qt::LeftButton);
                return;
            }
        ADD_FAILURE() << "no button " << text.toStdString();
    }

    QString Status() { return Find<QLabel>("labelMessage").text(); }

    void ExpectTold(const QString& text)
    {
        EXPECT_EQ(StripText(), text);
        EXPECT_EQ(Status(), text);
    }

    void ExpectNothingIsTold()
    {
        EXPECT_EQ(StripText(), QString());
        EXPECT_FALSE(Status().contains("saved.")) << Status().toStdString();
    }
};

const QString kGone = QStringLiteral("a.frp is gone: your changes are not saved.");

} // namespace

TEST_F(LeftOutSave, OfAFileThatHasGoneLeavesTheWorkUnsavedAndTells)
{
    OpenAndChange();
    fs::remove(folder / "a.frp");
    SaveSilently();
    EXPECT_TRUE(frame->Document().IsModified());
    EXPECT_FALSE(fs::exists(folder / "a.frp"));
    ExpectTold(kGone);
    EXPECT_TRUE(Find<QLabel>("labelMessage").toolTip().startsWith(Path("a.frp")));
}

TEST_F(LeftOutSave, OfAProtectedFileLeavesTheWorkUnsavedAndTells)
{
    OpenAndChange();
    Protect("a.frp");
    {
        const COrdinaryUser user;
        SaveSilently();
    }
    EXPECT_TRUE(frame->Document().IsModified());
    EXPECT_EQ(ReadAll(folder / "a.frp"), Bytes(65536));
    ExpectTold("a.frp may not be written: your changes are not saved.");
}

TEST_F(LeftOutSave, WithoutAChangeSaysThatNothingWasSaved)
{
    OpenThroughDialog("a.frp");
    fs::remove(folder / "a.frp");
    SaveSilently();
    ExpectTold("a.frp is gone: nothing was saved.");
    EXPECT_EQ(StripButtons(), Texts{"Save as..."});
}

TEST_F(LeftOutSave, KeepsTheTableFromANewOrAnotherFile)
{
    OpenAndChange();
    fs::remove(folder / "a.frp");
    const CModalAnswer answer(QMessageBox::Ok);
    frame->OpenPath(Path("b.rcp"));
    ExpectTold(kGone);
    Trigger(*frame, "actionOpen");
    Trigger(*frame, "actionNew");
    EXPECT_EQ(answer.texts, Texts{});
    EXPECT_EQ(ToQPath(frame->Document().Path()), Path("a.frp"));
    EXPECT_EQ(Title(), TitleWith("a.frp"));
    EXPECT_EQ(Grid().GetItemText(1, 2), "9");
    EXPECT_TRUE(frame->Document().IsModified());
}

TEST_F(LeftOutSave, IsAskedAboutAtClosing)
{
    OpenAndChange();
    fs::remove(folder / "a.frp");
    SaveSilently();
    const CModalAnswer answer(QMessageBox::No);
    EXPECT_TRUE(frame->close());
    EXPECT_EQ(answer.titles, Texts{"Notify of Vantor"});
}

TEST_F(LeftOutSave, IsToldUntilASaveSucceeds)
{
    OpenAndChange();
    fs::rename(folder / "a.frp", folder / "away.frp");
    SaveSilently();
    ClickCell(2, 2);
    ExpectTold(kGone); // not the cell's address
    fs::rename(folder / "away.frp", folder / "a.frp");
    SaveSilently();
    EXPECT_FALSE(frame->Document().IsModified());
    EXPECT_EQ(ReadAll(folder / "a.frp")[0], std::byte{9});
    ExpectNothingIsTold();
}

TEST_F(LeftOutSave, OffersToSaveElsewhere)
{
    OpenAndChange();
    fs::remove(folder / "a.frp");
    SaveSilently();
    EXPECT_EQ(StripButtons(), (Texts{"Save as...", "Discard changes"}));
    const CModalAnswer answer({ChoosePath(Path("c.frp"))});
    PressInStrip("Save as...");
    EXPECT_EQ(answer.titles, Texts{"Save as"});
    EXPECT_EQ(ReadAll(folder / "c.frp")[0], std::byte{9});
    EXPECT_EQ(ToQPath(frame->Document().Path()), Path("c.frp"));
    EXPECT_FALSE(frame->Document().IsModified());
    ExpectNothingIsTold();
}

TEST_F(LeftOutSave, OffersToDiscardTheChanges)
{
    OpenAndChange();
    fs::rename(folder / "a.frp", folder / "away.frp");
    SaveSilently();
    fs::rename(folder / "away.frp", folder / "a.frp");
    PressInStrip("Discard changes");
    EXPECT_EQ(Grid().GetItemText(1, 2), "0");
    EXPECT_FALSE(frame->Document().IsModified());
    ExpectNothingIsTold();
    frame->OpenPath(Path("b.rcp"));
    EXPECT_EQ(Title(), TitleWith("b.rcp"));
}

TEST_F(LeftOutSave, OfRowsThatWereNeverReadOffersNoOtherFile)
{
    Protect("a.frp");
    const COrdinaryUser user;
    OpenAndChange(); // over one of the 48
    SaveSilently();
    ExpectTold("a.frp may not be written: your changes are not saved.");
    EXPECT_EQ(StripButtons(), Texts{"Discard changes"});
}

TEST_F(LeftOutSave, UnderAnotherNameChangesNothing)
{
    WriteAll(folder / "c.frp", Bytes(65536));
    OpenAndChange();
    Protect("c.frp");
    {
        const COrdinaryUser user;
        const CModalAnswer answer({ChoosePath(Path("c.frp")), CModalAnswer::Press(QMessageBox::Yes)});
        Trigger(*frame, "actionSaveAs");
        EXPECT_EQ(answer.texts.size(), 2u);
    }
    EXPECT_EQ(ToQPath(frame->Document().Path()), Path("a.frp"));
    EXPECT_EQ(Title(), TitleWith("a.frp"));
    EXPECT_TRUE(frame->Document().IsModified());
    ExpectTold("c.frp may not be written: your changes are not saved.");
    EXPECT_EQ(StripButtons(), Texts{"Save as..."}); // the file that is open can still be saved
}

TEST_F(LeftOutSave, IsNoneWhereSomethingElseHasTheName)
{
    const QString message = "Can't save file " + Path("a.frp") + ",please check file or your disk!";
    OpenAndChange();
    for (const bool isPipe : {false, true}) {
        fs::remove(folder / "a.frp");
        if (isPipe)
            ASSERT_EQ(mkfifo((folder / "a.frp").c_str(), 0600), 0);
        else
            fs::create_directory(folder / "a.frp");
        EXPECT_TRUE(ShowActive(*frame)); // after the box of the time before
        const CModalAnswer answer(QMessageBox::Ok);
        QTest::keyClick(frame.get(), Qt::Key_S, Qt::ControlModifier);
        EXPECT_EQ(answer.texts, Texts{message});
        EXPECT_TRUE(frame->Document().IsModified());
        EXPECT_FALSE(StripText().contains("saved")) << StripText().toStdString();
    }
}
