// Readings again and the commands on formats and items, taken back and made again by keys.

#include "controls/GridCtrl.h"
#include "controls/Strip.h"
#include "library/FormatLibrary.h"
#include "tests/app/EditFixture.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTreeWidget>

namespace {

struct Window : EditFixture {
    /// A window of its own over a library of the one format.
    void StartWith(const DataFormat& format)
    {
        frame.reset();
        FormatLibrary library;
        library.formats.push_back(std::make_unique<DataFormat>(format));
        library.rowCount = 4;
        library.save(folder / "RecipeFile.Dat");
        Start();
    }

    QTreeWidget& List() { return Find<QTreeWidget>("listItems"); }

    void GoToItem(int row)
    {
        List().setFocus(Qt::TabFocusReason);
        Key(Qt::Key_Home);
        for (int i = 0; i < row; ++i)
            Key(Qt::Key_Down);
    }

    /// Opens the item menu for the current row by the keyboard and goes down to the entry.
    void ChooseInItemMenu(int index)
    {
        Key(Qt::Key_F10, Qt::ShiftModifier);
        auto& menu = Find<QMenu>("menuItems");
        ASSERT_TRUE(WaitFor([&] { return menu.isVisible(); }));
        for (int i = 0; i <= index; ++i)
            QTest::keyClick(&menu, Qt::Key_Down);
        QTest::keyClick(&menu, Qt::Key_Return);
    }

    QStringList Items()
    {
        QStringList items;
        for (int row = 0; row < List().topLevelItemCount(); ++row)
            items << List().topLevelItem(row)->text(3);
        return items;
    }

    QStringList Titles()
    {
        QStringList titles;
        for (int column = 2; column < Grid().ColumnCount(); ++column)
            titles << Grid().GetItemText(0, column);
        return titles;
    }

    QStringList FormatNames()
    {
        QStringList names;
        const auto& box = Find<QComboBox>("comboFormats");
        for (int i = 0; i < box.count(); ++i)
            names << box.itemText(i);
        return names;
    }

    /// Each format of the library's file: its name, then its items.
    QStringList FormatsInFile() const
    {
        FormatLibrary library;
        library.load(folder / "RecipeFile.Dat");
        QStringList formats;
        for (const auto& format : library.formats) {
            QString text = QString::fromStdU16String(std::u16string(TextOf(format->name)));
            for (const auto& item : format->items)
                text += u' ' + QString::fromStdU16String(std::u16string(TextOf(item->description)));
            formats << text;
        }
        return formats;
    }

    void TurnAutoUseOff()
    {
        auto& box = Find<QCheckBox>("checkAutoUse");
        QTest::mouseClick(&box, Qt::LeftButton, {}, QPoint(8, box.height() / 2));
        ASSERT_FALSE(box.isChecked());
    }

    static CModalAnswer::Action TypeAndAccept(const char* field, const QString& text)
    {
        return [field, text](QWidget& dialog) {
            TypeInto(dialog, field, text);
            QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
        };
    }

    void Describe(const QString& text, const std::function<void()>& open)
    {
        const CModalAnswer answer({TypeAndAccept("editDescription", text)});
        open();
        EXPECT_EQ(answer.texts.size(), 1u);
        Activate();
    }

    void AddFormat(const QString& name)
    {
        const CModalAnswer answer({TypeAndAccept("editName", name)});
        ClickOn(*frame, "buttonAddFormat");
        EXPECT_EQ(answer.texts.size(), 1u);
        Activate();
    }
};

struct ReadingCase {
    const char* name;
    std::function<void(Window&)> read;
    friend void PrintTo(const ReadingCase& c, std::ostream* out) { *out << c.name; }
};

struct UndoOfReading : Window, testing::WithParamInterface<ReadingCase> {};

void PressReturnIn(Window& window, const char* field)
{
    window.GoToField(field);
    window.Key(Qt::Key_Return);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Commands, UndoOfReading, testing::Values(
    ReadingCase{"RefreshData",          [](Window& w) { ClickOn(*w.frame, "buttonRefreshData"); }},
    ReadingCase{"UseFormat",            [](Window& w) { ClickOn(*w.frame, "buttonUseFormat"); }},
    ReadingCase{"ReturnInStartAddress", [](Window& w) { PressReturnIn(w, "editStartAddress"); }},
    ReadingCase{"ReturnInReadCount",    [](Window& w) { PressReturnIn(w, "editReadCount"); }}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

struct ItemCase {
    const char* name;
    std::function<void(Window&)> change;
    QStringList items;
    QString called;
    friend void PrintTo(const ItemCase& c, std::ostream* out) { *out << c.name; }
};

struct UndoOfItems : Window, testing::WithParamInterface<ItemCase> {};

// clang-format off
INSTANTIATE_TEST_SUITE_P(Commands, UndoOfItems, testing::Values(
    ItemCase{"AddByKey", [](Window& w) { w.GoToItem(0); w.Describe("New", [&w] { w.Key(Qt::Key_Insert); }); },
             {"Word", "New", "Name"}, "Add DataItem"},
    ItemCase{"AddByMenu", [](Window& w) { w.GoToItem(0); w.Describe("New", [&w] { w.ChooseInItemMenu(0); }); },
             {"Word", "New", "Name"}, "Add DataItem"},
    ItemCase{"ModifyByKey", [](Window& w) { w.GoToItem(0); w.Describe("Other", [&w] { w.Key(Qt::Key_Return); }); },
             {"Other", "Name"}, "Modify DataItem"},
    ItemCase{"ModifyByMenu", [](Window& w) { w.GoToItem(0); w.Describe("Other", [&w] { w.ChooseInItemMenu(1); }); },
             {"Other", "Name"}, "Modify DataItem"},
    ItemCase{"DeleteByKey", [](Window& w) { w.GoToItem(0); w.Key(Qt::Key_Delete); }, {"Name"}, "Del DataItem"},
    ItemCase{"DeleteByMenu", [](Window& w) { w.GoToItem(0); w.ChooseInItemMenu(2); }, {"Name"}, "Del DataItem"},
    ItemCase{"MoveUpByKey", [](Window& w) { w.GoToItem(1); w.Key(Qt::Key_Up, Qt::AltModifier); },
             {"Name", "Word"}, "Move DataItem"},
    ItemCase{"MoveDownByKey", [](Window& w) { w.GoToItem(0); w.Key(Qt::Key_Down, Qt::AltModifier); },
             {"Name", "Word"}, "Move DataItem"},
    ItemCase{"MoveUpByMenu", [](Window& w) { w.GoToItem(1); w.ChooseInItemMenu(4); },
             {"Name", "Word"}, "Move DataItem"},
    ItemCase{"Duplicate", [](Window& w) { w.GoToItem(0); w.ChooseInItemMenu(5); },
             {"Word", "Word", "Name"}, "Duplicate DataItem"},
    ItemCase{"DeleteAll", [](Window& w) { w.GoToItem(0); w.ChooseInItemMenu(3); }, {}, "Del All DataItem"}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

struct UndoOfFormats : Window {};

const QStringList kShown{"1", "ABCD", "2", "EFGH", "3", "IJKL", "4", "MNOP"};
const QStringList kEdited{"9", "ABCD", "2", "EFGH", "3", "IJKL", "4", "MNOP"};

} // namespace

TEST_P(UndoOfReading, BringsRowsLayoutAndEditsBack)
{
    TypeIntoCell(1, 2, "9");
    TypeInto(*frame, "editStartAddress", "3");
    TypeInto(*frame, "editReadCount", "2");
    GetParam().read(*this);
    const QStringList read{"2", "EFGH", "3", "IJKL"};
    EXPECT_EQ(Shown(), read);
    const Bytes library = ReadAll(folder / "RecipeFile.Dat");
    Grid().setFocus();
    EXPECT_EQ(NextUndo(), "Reading again");
    Undo();
    EXPECT_EQ(Shown(), kEdited);
    EXPECT_EQ(Grid().GetItemText(1, 1), "RW0");
    EXPECT_EQ(Selected(), "1,2");
    EXPECT_TRUE(IsModified());
    EXPECT_EQ(NextUndo(), "Typing");
    EXPECT_EQ(NextRedo(), "Reading again");
    EXPECT_EQ(TextIn(*frame, "editStartAddress"), "3");
    EXPECT_EQ(TextIn(*frame, "editReadCount"), "2");
    EXPECT_EQ(ReadAll(folder / "RecipeFile.Dat"), library);
    Redo();
    EXPECT_EQ(Shown(), read);
    EXPECT_EQ(Grid().GetItemText(1, 1), "RW3");
    Undo();
    Undo();
    EXPECT_EQ(Shown(), kShown);
    EXPECT_FALSE(IsModified());
}

TEST_P(UndoOfItems, BringsTheListTheRowsAndTheFileOfFormatsBack)
{
    TypeIntoCell(1, 2, "9");
    GetParam().change(*this);
    EXPECT_EQ(Items(), GetParam().items);
    EXPECT_EQ(Titles(), GetParam().items);
    EXPECT_EQ(NextUndo(), GetParam().called);
    const QStringList changed = FormatsInFile();
    EXPECT_EQ(changed, QStringList((QStringList{"Row"} + GetParam().items).join(u' ')));
    Undo();
    EXPECT_EQ(Items(), (QStringList{"Word", "Name"}));
    EXPECT_EQ(Titles(), Items());
    EXPECT_EQ(Shown(), kEdited);
    EXPECT_EQ(FormatsInFile(), QStringList{"Row Word Name"}) << "it is saved at once";
    EXPECT_EQ(TextIn(*frame, "editFormatLength"), "3");
    EXPECT_EQ(NextUndo(), "Typing");
    EXPECT_EQ(NextRedo(), GetParam().called);
    Redo();
    EXPECT_EQ(Items(), GetParam().items);
    EXPECT_EQ(Titles(), GetParam().items);
    EXPECT_EQ(FormatsInFile(), changed);
    EXPECT_EQ(NextUndo(), GetParam().called);
}

TEST_P(UndoOfItems, WithoutAutoUseIsOfTheFormatAlone)
{
    TurnAutoUseOff();
    TypeIntoCell(1, 2, "9");
    GetParam().change(*this);
    EXPECT_EQ(Items(), GetParam().items);
    EXPECT_EQ(Shown(), kEdited);
    Undo();
    EXPECT_EQ(Items(), (QStringList{"Word", "Name"}));
    EXPECT_EQ(Shown(), kEdited);
    EXPECT_TRUE(IsModified());
    EXPECT_EQ(FormatsInFile(), QStringList{"Row Word Name"});
    Redo();
    EXPECT_EQ(Items(), GetParam().items);
    EXPECT_EQ(Shown(), kEdited);
}

TEST_F(UndoOfFormats, ANewFormatGoesAndComes)
{
    TypeIntoCell(1, 2, "9");
    AddFormat("Words");
    EXPECT_EQ(FormatNames(), (QStringList{"Row", "Words"}));
    EXPECT_EQ(Titles(), QStringList{"Desc0"});
    EXPECT_EQ(NextUndo(), "Add Dataformat");
    Undo();
    EXPECT_EQ(FormatNames(), QStringList{"Row"});
    EXPECT_EQ(FormatsInFile(), QStringList{"Row Word Name"});
    EXPECT_EQ(Items(), (QStringList{"Word", "Name"}));
    EXPECT_EQ(Shown(), kEdited);
    Redo();
    EXPECT_EQ(FormatNames(), (QStringList{"Row", "Words"}));
    EXPECT_EQ(FormatsInFile(), (QStringList{"Row Word Name", "Words Desc0"}));
    EXPECT_EQ(Find<QComboBox>("comboFormats").currentText(), "Words");
    EXPECT_EQ(Titles(), QStringList{"Desc0"});
}

TEST_F(UndoOfFormats, ADeletedFormatComesAndGoes)
{
    TypeIntoCell(1, 2, "9");
    ClickOn(*frame, "buttonDeleteFormat");
    EXPECT_EQ(FormatNames(), QStringList());
    EXPECT_EQ(Shown(), QStringList());
    EXPECT_EQ(NextUndo(), "Delete cur Dataformat");
    Grid().setFocus();
    Undo();
    EXPECT_EQ(FormatNames(), QStringList{"Row"});
    EXPECT_EQ(FormatsInFile(), QStringList{"Row Word Name"});
    EXPECT_EQ(Items(), (QStringList{"Word", "Name"}));
    EXPECT_TRUE(Find<QPushButton>("buttonDeleteFormat").isEnabled());
    EXPECT_EQ(Shown(), kEdited);
    Redo();
    EXPECT_EQ(FormatNames(), QStringList());
    EXPECT_EQ(Shown(), QStringList());
}

TEST_F(UndoOfFormats, KeepAllIsTakenBackAndOfferedAgain)
{
    StartWith(MakeFormat(u"Empty", {}));
    GoToItem(0);
    Describe("mine", [this] { Key(Qt::Key_Insert); });
    const auto& told = Find<QLabel>("labelStrip");
    const QString text = told.text();
    ASSERT_EQ(text, "1 of the 2 items shown will be saved.");
    ClickOn(Find<CStrip>("strip"), "buttonStrip");
    EXPECT_FALSE(Find<CStrip>("strip").isVisible());
    EXPECT_EQ(FormatsInFile().front().count(u' '), 2);
    EXPECT_EQ(NextUndo(), "Keep all");
    Grid().setFocus();
    Undo();
    EXPECT_EQ(FormatsInFile().front().count(u' '), 1);
    EXPECT_TRUE(Find<CStrip>("strip").isVisible());
    EXPECT_EQ(told.text(), text);
    Redo();
    EXPECT_EQ(FormatsInFile().front().count(u' '), 2);
    EXPECT_FALSE(Find<CStrip>("strip").isVisible());
}

TEST_F(UndoOfFormats, AFormatThatIsAnotherOneByNowIsToldAndLeftAlone)
{
    DataItem wide = MakeItem(u"Word", DataType::Signed16, 1, 5);
    wide.unicode = 1;
    StartWith(MakeFormat(u"Row", {wide, MakeItem(u"Rest", DataType::Unsigned32, 2, 10)}));
    OpenThroughDialog("a.rcp");
    const QStringList before = Shown();
    GoToItem(1);
    Key(Qt::Key_Delete);
    ASSERT_EQ(Titles(), QStringList{"Word"});
    GoToItem(0);
    {
        const CModalAnswer answer({[](QWidget& dialog) {
            QTest::keyClick(&FindIn<QComboBox>(dialog, "comboType"), Qt::Key_End); // a string is no wide one
            ClickOn(dialog, "buttonCancel");
        }});
        Key(Qt::Key_Return);
        Activate();
    }
    Undo();
    EXPECT_EQ(Told(), "Undone: Del DataItem. The data format is another one by now and stays as it is.");
    EXPECT_EQ(Items(), QStringList{"Word"});
    EXPECT_EQ(Shown(), before) << "the rows are those before it";
    Redo();
    EXPECT_EQ(Titles(), QStringList{"Word"});
    EXPECT_EQ(Told(), "Done again: Del DataItem");
}

TEST_F(UndoOfFormats, ACommandOfWhichNothingIsLeftIsToldAndForgotten)
{
    DataItem wide = MakeItem(u"Word", DataType::Signed16, 1, 5);
    wide.unicode = 1;
    StartWith(MakeFormat(u"Row", {wide, MakeItem(u"Rest", DataType::Unsigned32, 2, 10)}));
    OpenThroughDialog("a.rcp");
    ClickOn(*frame, "checkAutoUse"); // off: no reading goes with the command
    GoToItem(1);
    Key(Qt::Key_Delete);
    GoToItem(0);
    {
        const CModalAnswer answer({[](QWidget& dialog) {
            QTest::keyClick(&FindIn<QComboBox>(dialog, "comboType"), Qt::Key_End); // a string is no wide one
            ClickOn(dialog, "buttonCancel");
        }});
        Key(Qt::Key_Return);
        Activate();
    }
    EXPECT_EQ(NextUndo(), "Del DataItem");
    Undo();
    EXPECT_EQ(Told(), "Not undone: Del DataItem. The data format is another one by now and stays as it is.");
    EXPECT_EQ(Items(), QStringList{"Word"});
    EXPECT_FALSE(Action("actionUndo").isEnabled());
    EXPECT_FALSE(Action("actionRedo").isEnabled());
}

TEST_F(UndoOfFormats, ReadingsOfAFileThatAnotherProgramChangedBringBackWhatWasShown)
{
    WriteAll(folder / "a.rcp", Bytes(original.size()));
    ClickOn(*frame, "buttonRefreshData");
    EXPECT_EQ(Grid().GetItemText(1, 2), "0");
    Undo();
    EXPECT_EQ(Shown(), kShown);
    Redo();
    EXPECT_EQ(Grid().GetItemText(1, 2), "0");
}

TEST_F(UndoOfFormats, ARenamedFormatGetsItsNameBack)
{
    const QStringList before = FormatsInFile();
    {
        const CModalAnswer answer({TypeAndAccept("editName", "Other")});
        Find<QComboBox>("comboFormats").setFocus();
        Key(Qt::Key_F2);
        EXPECT_EQ(answer.texts.size(), 1u);
        Activate();
    }
    const QStringList renamed{"Other Word Name"};
    EXPECT_EQ(FormatNames(), QStringList{"Other"});
    EXPECT_EQ(FormatsInFile(), renamed);
    EXPECT_EQ(Shown(), kShown);
    Grid().setFocus();
    EXPECT_EQ(NextUndo(), "Rename Dataformat");
    Undo();
    EXPECT_EQ(FormatsInFile(), before);
    EXPECT_NE(FormatNames(), QStringList{"Other"});
    Redo();
    EXPECT_EQ(FormatNames(), QStringList{"Other"});
    EXPECT_EQ(FormatsInFile(), renamed);
}

TEST_F(UndoOfFormats, ADuplicateFormatGoesAndComesBack)
{
    const QStringList before = FormatNames();
    GoToItem(0);
    ChooseInItemMenu(8);
    EXPECT_EQ(FormatNames(), before + QStringList{before[0] + " (2)"});
    EXPECT_EQ(Shown(), kShown);
    Grid().setFocus();
    EXPECT_EQ(NextUndo(), "Duplicate Dataformat");
    Undo();
    EXPECT_EQ(FormatNames(), before);
    EXPECT_EQ(FormatsInFile().size(), 1);
    Redo();
    EXPECT_EQ(FormatNames().size(), 2);
    EXPECT_EQ(FormatsInFile().size(), 2);
}
