// Two windows over one format library, each worked by clicks and keys.

#include "controls/GridCtrl.h"
#include "library/FormatLibrary.h"
#include "tests/app/EditFixture.h"

#include <QCheckBox>
#include <QComboBox>
#include <QPushButton>
#include <QTest>
#include <QTreeWidget>

namespace {

/// One of the windows, as its user has it.
class CUser {
public:
    explicit CUser(CMainFrame& frame) : m_frame(frame) {}

    QStringList Names() const
    {
        QStringList names;
        for (int i = 0; i < Box().count(); ++i)
            names << Box().itemText(i);
        return names;
    }

    QString Chosen() const { return Box().currentText(); }

    QStringList Items(int column = 3) const
    {
        QStringList items;
        for (int row = 0; row < List().topLevelItemCount(); ++row)
            items << List().topLevelItem(row)->text(column);
        return items;
    }

    QStringList Titles() const
    {
        const auto& grid = *m_frame.findChild<CGridCtrl*>();
        QStringList titles;
        for (int column = 2; column < grid.ColumnCount(); ++column)
            titles << grid.GetItemText(0, column);
        return titles;
    }

    void Press(const char* button)
    {
        Activate();
        ClickOn(m_frame, button);
    }

    void AddFormat(const QString& name)
    {
        AnswerWith("editName", name, [this] { Press("buttonAddFormat"); });
    }

    /// After the item of that row.
    void AddItem(int row, const QString& name)
    {
        AnswerWith("editDescription", name, [&] { PressInList(row, Qt::Key_Insert); });
    }

    void RenameItem(int row, const QString& name)
    {
        AnswerWith("editDescription", name, [&] { PressInList(row, Qt::Key_Return); });
    }

    void DeleteItem(int row) { PressInList(row, Qt::Key_Delete); }

    void ChooseNext()
    {
        Activate();
        Box().setFocus();
        QTest::keyClick(&Box(), Qt::Key_Down);
    }

    void TurnAutoUseOff()
    {
        Activate();
        auto& box = FindIn<QCheckBox>(m_frame, "checkAutoUse");
        QTest::mouseClick(&box, Qt::LeftButton, {}, QPoint(8, box.height() / 2));
        ASSERT_FALSE(box.isChecked());
    }

    void Activate() { ASSERT_TRUE(ShowActive(m_frame)); }

private:
    QComboBox& Box() const { return FindIn<QComboBox>(m_frame, "comboFormats"); }
    QTreeWidget& List() const { return FindIn<QTreeWidget>(m_frame, "listItems"); }

    void PressInList(int row, Qt::Key key)
    {
        Activate();
        List().setFocus(Qt::TabFocusReason);
        QTest::keyClick(&List(), Qt::Key_Home);
        for (int i = 0; i < row; ++i)
            QTest::keyClick(&List(), Qt::Key_Down);
        QTest::keyClick(&List(), key);
    }

    void AnswerWith(const char* field, const QString& text, const std::function<void()>& open)
    {
        const CModalAnswer answer({[&](QWidget& dialog) {
            TypeInto(dialog, field, text);
            QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
        }});
        open();
        EXPECT_EQ(answer.texts.size(), 1U);
        Activate();
    }

    CMainFrame& m_frame;
};

/// The first window has "a.rcp" open, the second has its own file.
struct SharedFormats : EditFixture {
    void SetUp() override
    {
        EditFixture::SetUp();
        secondFrame = std::make_unique<CMainFrame>(folder / "vantor");
        ASSERT_TRUE(ShowActive(*secondFrame));
    }

    CUser First() { return CUser(*frame); }
    CUser Second() { return CUser(*secondFrame); }

    /// Each format of the library's file: its name, then its items.
    QStringList Stored() const
    {
        FormatLibrary library;
        library.loadReadOnly(folder / "RecipeFile.Dat");
        QStringList formats;
        for (const auto& format : library.formats) {
            QString text = QString::fromStdU16String(std::u16string(TextOf(format->name)));
            for (const auto& item : format->items)
                text += u' ' + QString::fromStdU16String(std::u16string(TextOf(item->description)));
            formats << text;
        }
        return formats;
    }

    std::unique_ptr<CMainFrame> secondFrame;
};

} // namespace

TEST_F(SharedFormats, ThatBothAddAreKeptAndShown)
{
    First().AddFormat("M");
    Second().AddFormat("N");
    EXPECT_EQ(Stored(), (QStringList{"Row Word Name", "M Desc0", "N Desc0"}));
    EXPECT_EQ(Second().Names(), (QStringList{"Row", "M", "N"}));
    EXPECT_EQ(Second().Chosen(), "N");
    EXPECT_EQ(First().Names(), (QStringList{"Row", "M"}));
    First().Press("buttonUseFormat");
    EXPECT_EQ(First().Names(), (QStringList{"Row", "M", "N"}));
    EXPECT_EQ(First().Chosen(), "M");
    EXPECT_EQ(First().Titles(), QStringList{"Desc0"});
    First().Press("buttonDeleteFormat");
    EXPECT_EQ(First().Names(), (QStringList{"Row", "N"}));
    EXPECT_EQ(Stored(), (QStringList{"Row Word Name", "N Desc0"}));
}

TEST_F(SharedFormats, ThatOthersAddAreShownWhenAnotherIsChosen)
{
    First().AddFormat("M");
    Second().AddFormat("N");
    First().Press("buttonDeleteFormat");
    ASSERT_EQ(First().Names(), (QStringList{"Row", "N"}));
    Second().AddFormat("O");
    const Bytes library = ReadAll(folder / "RecipeFile.Dat");
    First().Activate();
    First().ChooseNext();
    EXPECT_EQ(First().Chosen(), "N");
    EXPECT_EQ(First().Names(), (QStringList{"Row", "N", "O"}));
    EXPECT_EQ(ReadAll(folder / "RecipeFile.Dat"), library);
}

TEST_F(SharedFormats, ThatOthersAddAreShownAfterACommandThatIsNotUsed)
{
    First().TurnAutoUseOff();
    Second().AddFormat("N");
    First().AddFormat("M");
    EXPECT_EQ(First().Names(), (QStringList{"Row", "N", "M"}));
    EXPECT_EQ(First().Chosen(), "M");
    EXPECT_EQ(Stored(), (QStringList{"Row Word Name", "N Desc0"}));
    First().Press("buttonUseFormat");
    EXPECT_EQ(Stored(), (QStringList{"Row Word Name", "N Desc0", "M Desc0"}));
}

TEST_F(SharedFormats, WhatIsReadIsWhatWasShownWhenItWasAskedFor)
{
    Second().AddItem(1, "Rest");
    First().Press("buttonUseFormat");
    EXPECT_EQ(First().Titles(), (QStringList{"Word", "Name"}));
    EXPECT_EQ(First().Items(), (QStringList{"Word", "Name", "Rest"})) << "from now on";
    First().Press("buttonUseFormat");
    EXPECT_EQ(First().Titles(), (QStringList{"Word", "Name", "Rest"}));
}

TEST_F(SharedFormats, ThatIsDeletedElsewhereIsStillReadBy)
{
    Second().AddFormat("N");
    Second().Press("buttonDeleteFormat");
    Second().Press("buttonDeleteFormat");
    ASSERT_EQ(Stored(), QStringList());
    First().Press("buttonRefreshData");
    EXPECT_EQ(First().Titles(), (QStringList{"Word", "Name"}));
    EXPECT_EQ(First().Names(), QStringList());
    EXPECT_EQ(First().Items(), QStringList());
    EXPECT_FALSE(Find<QPushButton>("buttonDeleteFormat").isEnabled());
    First().AddFormat("M");
    EXPECT_EQ(Stored(), QStringList{"M Desc0"});
}

TEST_F(SharedFormats, ThatBothChangeAreTwoAndWorkGoesOnWithOnesOwn)
{
    Second().RenameItem(0, "Theirs");
    First().RenameItem(0, "Ours");
    EXPECT_EQ(Stored(), (QStringList{"Row Theirs Name", "Row (2) Ours Name"}));
    EXPECT_EQ(First().Names(), (QStringList{"Row", "Row (2)"}));
    EXPECT_EQ(First().Chosen(), "Row (2)");
    EXPECT_EQ(First().Titles(), (QStringList{"Ours", "Name"}));
    First().DeleteItem(1);
    EXPECT_EQ(Stored(), (QStringList{"Row Theirs Name", "Row (2) Ours"}));
    Second().Press("buttonUseFormat");
    EXPECT_EQ(Second().Names(), (QStringList{"Row", "Row (2)"}));
    EXPECT_EQ(Second().Chosen(), "Row");
    EXPECT_EQ(Second().Items(), (QStringList{"Theirs", "Name"}));
}

TEST_F(SharedFormats, NumbersThatADeletedItemLeftStayThoughOthersAddFormats) // kept
{
    Second().AddFormat("N");
    First().DeleteItem(0);
    EXPECT_EQ(First().Names(), (QStringList{"Row", "N"}));
    EXPECT_EQ(First().Items(0), QStringList{"1"});
    EXPECT_EQ(First().Items(), QStringList{"Name"});
}

TEST_F(SharedFormats, AddedOnesAreTakenBackWhereverTheyStand)
{
    Second().AddFormat("N");
    First().AddFormat("M");
    ASSERT_EQ(First().Names(), (QStringList{"Row", "N", "M"}));
    Grid().setFocus();
    Undo();
    EXPECT_EQ(First().Names(), (QStringList{"Row", "N"}));
    EXPECT_EQ(Stored(), (QStringList{"Row Word Name", "N Desc0"}));
    Redo();
    EXPECT_EQ(Stored().size(), 3);
    EXPECT_TRUE(Stored().contains("M Desc0"));
    EXPECT_EQ(First().Chosen(), "M");
}

TEST_F(SharedFormats, ThatOthersChangedSinceAreNotTakenBack)
{
    First().AddFormat("M");
    Second().Press("buttonUseFormat");
    Second().ChooseNext();
    Second().AddItem(0, "More");
    ASSERT_EQ(Stored(), (QStringList{"Row Word Name", "M Desc0 More"}));
    First().Press("buttonUseFormat");
    Undo(); // of that reading
    Undo();
    EXPECT_EQ(Told(), "Undone: Add Dataformat. The data format is another one by now and stays as it is.");
    EXPECT_EQ(Stored(), (QStringList{"Row Word Name", "M Desc0 More"}));
    EXPECT_EQ(First().Titles(), (QStringList{"Word", "Name"}));
}

TEST_F(SharedFormats, OfOthersStayWhenAWindowCloses)
{
    First().TurnAutoUseOff();
    First().AddFormat("M");
    Second().AddFormat("N");
    frame.reset();
    EXPECT_EQ(Stored(), (QStringList{"Row Word Name", "N Desc0", "M Desc0"}));
    secondFrame.reset();
    EXPECT_EQ(Stored(), (QStringList{"Row Word Name", "N Desc0", "M Desc0"}));
}
