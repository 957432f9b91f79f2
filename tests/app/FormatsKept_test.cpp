#include "library/FormatLibrary.h"
#include "tests/app/FrameFixture.h"
#include "tests/files/OrdinaryUser.h"

#include <QAccessible>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QStatusTipEvent>
#include <QTest>
#include <QTreeWidget>

namespace fs = std::filesystem;

namespace {

/// What the window says of formats that are not kept, seen in the window itself.
struct FormatsKept : FrameFixture {
    ~FormatsKept() override
    {
        frame.reset();
        fs::permissions(folder.Path(), fs::perms::all);
    }

    fs::path LibraryPath() const { return folder / "RecipeFile.Dat"; }
    QTreeWidget& List() { return Find<QTreeWidget>("listItems"); }
    QLabel& StatusBar() { return Find<QLabel>("labelMessage"); }

    QString Strip()
    {
        const auto& strip = Find<CStrip>("strip");
        return strip.isVisible() ? Find<QLabel>("labelStrip").text() : QString();
    }

    /// The button `text` of what the strip says now; null when there is none.
    QPushButton* StripButton(const QString& text)
    {
        for (auto* button : Find<CStrip>("strip").findChildren<QPushButton*>())
            if (button->isVisible() && button->text() == text)
                return button;
        return nullptr;
    }

    void ClickInStrip(const QString& text)
    {
        ASSERT_TRUE(WaitFor([&] { return StripButton(text) != nullptr; }));
        QTest::mouseClick(StripButton(text), Qt::LeftButton);
    }

    void ChooseInItemMenu(int index)
    {
        List().setFocus();
        QTest::keyClick(&List(), Qt::Key_F10, Qt::ShiftModifier);
        auto& menu = Find<QMenu>("menuItems");
        ASSERT_TRUE(WaitFor([&] { return menu.isVisible(); }));
        for (int i = 0; i <= index; ++i)
            QTest::keyClick(&menu, Qt::Key_Down);
        QTest::keyClick(&menu, Qt::Key_Return);
    }

    void AddItem(const QString& description)
    {
        const CModalAnswer answer({[description](QWidget& dialog) {
            TypeInto(dialog, "editDescription", description);
            QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
        }});
        List().setFocus();
        QTest::keyClick(&List(), Qt::Key_Insert);
    }

    void Restart()
    {
        frame.reset();
        Start();
    }

    QStringList Descriptions()
    {
        QStringList texts;
        for (int row = 0; row < List().topLevelItemCount(); ++row)
            texts << List().topLevelItem(row)->text(3);
        return texts;
    }

    /// A save that cannot be made: a folder has the file's name.
    void BlockLibrary()
    {
        fs::remove(LibraryPath());
        fs::create_directory(LibraryPath());
    }

    QString NotSaved() const { return "The data formats could not be saved in " + Path("RecipeFile.Dat"); }
};

} // namespace

TEST_F(FormatsKept, AnItemThatTheCountLeavesOutIsKeptByAButton)
{
    Start();
    ChooseInItemMenu(3); // delete them all
    EXPECT_EQ(Strip(), "");
    Restart();
    EXPECT_EQ(Strip(), "The item shown will not be saved.");
    AddItem("mine");
    EXPECT_EQ(Strip(), "1 of the 2 items shown will be saved.");
    ClickInStrip("Keep all");
    EXPECT_EQ(Strip(), "");
    FormatLibrary stored;
    ASSERT_GT(stored.loadReadOnly(LibraryPath()), 0);
    EXPECT_EQ(stored.formats.at(0)->itemCount, 2) << "at once";
    Restart();
    EXPECT_EQ(Strip(), "");
    EXPECT_EQ(Descriptions(), (QStringList{"Desc1", "mine"}));
}

TEST_F(FormatsKept, WithoutTheButtonTheCountStays) // kept
{
    Start();
    ChooseInItemMenu(3);
    Restart();
    AddItem("mine");
    Restart();
    EXPECT_EQ(Descriptions(), (QStringList{"Desc1"}));
}

TEST_F(FormatsKept, KeepingAllLeavesTheTableAsItIs)
{
    MakeFile("a.rcp");
    Start();
    ChooseInItemMenu(3);
    Restart();
    OpenThroughDialog("a.rcp");
    TypeIntoCell(1, 2, "7");
    ASSERT_TRUE(frame->Document().IsModified());
    ClickInStrip("Keep all");
    EXPECT_TRUE(frame->Document().IsModified());
    EXPECT_EQ(Strip(), "");
}

TEST_F(FormatsKept, AFailedSaveStaysInTheStatusBarUntilOneSucceeds)
{
    Start();
    BlockLibrary();
    ClickOn(*frame, "buttonUseFormat");
    EXPECT_EQ(StatusBar().text(), NotSaved());
    EXPECT_EQ(StatusBar().toolTip(), NotSaved());
    for (const char* tip : {"Open file", ""}) { // a menu is opened, and closed again
        QStatusTipEvent event(tip);
        QCoreApplication::sendEvent(frame.get(), &event);
    }
    EXPECT_TRUE(StatusBar().isVisible());
    EXPECT_EQ(StatusBar().text(), NotSaved());
    Trigger(*frame, "actionNew"); // which saves the library, too
    ClickCell(1, 2);
    EXPECT_EQ(StatusBar().text(), NotSaved());

    fs::remove(LibraryPath());
    ClickOn(*frame, "buttonUseFormat");
    EXPECT_FALSE(StatusBar().text().contains("could not be saved"));
    EXPECT_EQ(StatusBar().toolTip(), "");
}

TEST_F(FormatsKept, AFailedSaveIsReadByScreenReaders)
{
    Start();
    BlockLibrary();
    ClickOn(*frame, "buttonUseFormat");
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&StatusBar())->text(QAccessible::Name), NotSaved());
}

TEST_F(FormatsKept, ALibraryThatMayOnlyBeReadIsToldAtTheStart)
{
    fs::permissions(LibraryPath(), fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
    const COrdinaryUser user;
    Start();
    EXPECT_EQ(Descriptions(), (QStringList{"Word", "Name"}));
    EXPECT_EQ(Strip(), Path("RecipeFile.Dat") + " may not be written: changes to the data formats are not kept.");
}

TEST_F(FormatsKept, ADamagedLibraryIsToldUntilItIsDismissed)
{
    Bytes damaged = ReadAll(LibraryPath());
    damaged.pop_back();
    WriteAll(LibraryPath(), damaged);
    Start();
    const QString told =
        "The data formats in " + Path("RecipeFile.Dat") +
        " are damaged: what stands after the damage is not shown. The file is copied before it is saved.";
    EXPECT_EQ(Strip(), told);
    ClickOn(*frame, "buttonUseFormat"); // saves what is left
    EXPECT_EQ(Strip(), told);
    EXPECT_EQ(ReadAll(folder / "RecipeFile.Dat.bak"), damaged);
    QTest::keyClick(frame.get(), Qt::Key_F6);
    ClickOn(*frame, "buttonDismissStrip");
    EXPECT_EQ(Strip(), "");
}
