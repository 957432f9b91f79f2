// Edits of cells, taken back and made again by keys.

#include "controls/GridCtrl.h"
#include "controls/GridModel.h"
#include "controls/ListCtrlCl.h"
#include "library/FormatLibrary.h"
#include "tests/app/EditFixture.h"

#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QTest>
#include <QTreeWidget>

namespace {

using Steps = std::function<void(EditFixture&)>;

struct EditCase {
    const char* name;
    Steps edit;
    QStringList shown;
    const char* called;
    const char* cells; ///< selected after the undo, and after the redo
    friend void PrintTo(const EditCase& c, std::ostream* out) { *out << c.name; }
};

struct UndoOfCells : EditFixture, testing::WithParamInterface<EditCase> {};

void BrowseBits(EditFixture& window)
{
    window.ClickCell(2, 2);
    const CModalAnswer answer({[](QWidget& dialog) {
                                   auto& list = FindIn<CListCtrlCl>(dialog, "listBits");
                                   const QModelIndex bit2 = list.model()->index(0, 13);
                                   QTest::mouseClick(list.viewport(), Qt::LeftButton, {},
                                                     list.visualRect(bit2).center());
                               },
                               CModalAnswer::PressNamed("buttonOK")});
    window.Key(Qt::Key_B, Qt::ControlModifier);
    window.Activate();
    window.Grid().setFocus();
}

const QStringList kBefore{"1", "ABCD", "2", "EFGH", "3", "IJKL", "4", "MNOP"};

// clang-format off
INSTANTIATE_TEST_SUITE_P(Commands, UndoOfCells, testing::Values(
    EditCase{"Typing", [](EditFixture& w) { w.TypeIntoCell(2, 2, "77"); },
             {"1", "ABCD", "77", "EFGH", "3", "IJKL", "4", "MNOP"}, "Typing", "2,2"},
    EditCase{"Paste", [](EditFixture& w) { w.PasteAt(1, 2, "5\tP\n6\tQ\n7\tR"); },
             {"5", "P", "6", "Q", "7", "R", "4", "MNOP"}, "Paste (6 cells)", "1,2 1,3 2,2 2,3 3,2 3,3"},
    EditCase{"PasteOfOneCell", [](EditFixture& w) { w.PasteAt(4, 3, "P"); },
             {"1", "ABCD", "2", "EFGH", "3", "IJKL", "4", "P"}, "Paste", "4,3"},
    EditCase{"Cut", [](EditFixture& w) { w.ChooseCells(2, 2, 3, 3); w.Key(Qt::Key_X, Qt::ControlModifier); },
             {"1", "ABCD", "", "", "", "", "4", "MNOP"}, "Cut (4 cells)", "2,2 2,3 3,2 3,3"},
    EditCase{"Delete", [](EditFixture& w) { w.ChooseCells(3, 2, 4, 2); w.Key(Qt::Key_Delete); },
             {"1", "ABCD", "2", "EFGH", "", "IJKL", "", "MNOP"}, "Clear (2 cells)", "3,2 4,2"},
    EditCase{"BitBrowser", BrowseBits,
             {"1", "ABCD", "6", "EFGH", "3", "IJKL", "4", "MNOP"}, "BitBrowse", "2,2"}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

struct KeysCase {
    const char* name;
    Qt::Key undo;
    Qt::KeyboardModifiers undoWith;
    Qt::Key redo;
    Qt::KeyboardModifiers redoWith;
    friend void PrintTo(const KeysCase& c, std::ostream* out) { *out << c.name; }
};

struct UndoKeys : EditFixture, testing::WithParamInterface<KeysCase> {
    void PressUndo() { Key(GetParam().undo, GetParam().undoWith); }
    void PressRedo() { Key(GetParam().redo, GetParam().redoWith); }
};

// clang-format off
INSTANTIATE_TEST_SUITE_P(Keys, UndoKeys, testing::Values(
    KeysCase{"CtrlZAndCtrlY", Qt::Key_Z, Qt::ControlModifier, Qt::Key_Y, Qt::ControlModifier},
    KeysCase{"AltBackspaceAndCtrlShiftZ", Qt::Key_Backspace, Qt::AltModifier,
             Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

struct UndoByKeys : EditFixture {};

} // namespace

TEST_P(UndoOfCells, TakesTheWholeCommandBackAndMakesItAgain)
{
    GetParam().edit(*this);
    EXPECT_EQ(Shown(), GetParam().shown);
    EXPECT_EQ(NextUndo(), GetParam().called);
    EXPECT_TRUE(IsModified());
    ClickCell(4, 2);
    Undo();
    EXPECT_EQ(Shown(), kBefore);
    EXPECT_EQ(Selected(), GetParam().cells);
    EXPECT_FALSE(IsModified());
    EXPECT_EQ(NextUndo(), "");
    EXPECT_EQ(NextRedo(), GetParam().called);
    ClickCell(4, 2);
    Redo();
    EXPECT_EQ(Shown(), GetParam().shown);
    EXPECT_EQ(Selected(), GetParam().cells);
    EXPECT_TRUE(IsModified());
    EXPECT_EQ(NextRedo(), "");
    Undo();
    EXPECT_FALSE(ClosingAsks());
    EXPECT_EQ(ReadAll(folder / "a.rcp"), original);
}

TEST_P(UndoKeys, ActOnTheDocumentInTheGridAndOutsideFields)
{
    TypeIntoCell(1, 2, "9");
    for (const char* place : {"gridRecipe", "listItems", "comboFormats", "buttonRefreshData"}) {
        Find<QWidget>(place).setFocus();
        PressUndo();
        EXPECT_EQ(Grid().GetItemText(1, 2), "1") << place;
        PressRedo();
        EXPECT_EQ(Grid().GetItemText(1, 2), "9") << place;
    }
}

TEST_P(UndoKeys, ActOnTheEditorOfACellWhileItIsOpen)
{
    TypeIntoCell(2, 2, "9");
    ClickCell(1, 2);
    Key(Qt::Key_F2);
    auto* editor = qobject_cast<QLineEdit*>(QApplication::focusWidget());
    ASSERT_NE(editor, nullptr);
    QTest::keyClicks(editor, "7");
    PressUndo();
    EXPECT_EQ(editor->text(), "1");
    PressUndo(); // there is no more of the editor, and the document's is not its own
    PressRedo();
    EXPECT_EQ(editor->text(), "7");
    PressRedo();
    EXPECT_TRUE(Grid().IsEditing());
    Key(Qt::Key_Escape);
    EXPECT_EQ(Shown(), (QStringList{"1", "ABCD", "9", "EFGH", "3", "IJKL", "4", "MNOP"}));
    EXPECT_EQ(NextUndo(), "Typing");
}

TEST_P(UndoKeys, ActOnTheFieldWithTheFocus)
{
    TypeIntoCell(1, 2, "9");
    for (const char* name : {"editStartAddress", "editReadCount"}) {
        QLineEdit& field = GoToField(name);
        const QString before = field.text();
        QTest::keyClicks(&field, "2");
        PressUndo();
        EXPECT_EQ(field.text(), before) << name;
        PressUndo();
        PressRedo();
        EXPECT_EQ(field.text(), "2") << name;
        PressRedo();
    }
    Grid().setFocus();
    EXPECT_EQ(Grid().GetItemText(1, 2), "9");
    EXPECT_EQ(NextUndo(), "Typing");
    EXPECT_EQ(NextRedo(), "");
}

TEST_F(UndoByKeys, GoesThroughAllCommandsInTheirOrder)
{
    TypeIntoCell(1, 2, "9");
    PasteAt(2, 2, "8\n7");
    ClickCell(2, 3);
    Key(Qt::Key_Delete);
    for (const char* name : {"Clear", "Paste (2 cells)", "Typing"}) {
        EXPECT_EQ(NextUndo(), name);
        Undo();
        EXPECT_EQ(NextRedo(), name);
    }
    EXPECT_EQ(Shown(), kBefore);
    Undo(); // nothing more
    EXPECT_EQ(Shown(), kBefore);
    for (const char* name : {"Typing", "Paste (2 cells)", "Clear"}) {
        EXPECT_EQ(NextRedo(), name);
        Redo();
    }
    EXPECT_EQ(Shown(), (QStringList{"9", "ABCD", "8", "", "7", "IJKL", "4", "MNOP"}));
}

TEST_F(UndoByKeys, ANewEditEndsWhatCouldBeMadeAgain)
{
    TypeIntoCell(1, 2, "9");
    Undo();
    TypeIntoCell(2, 2, "8");
    EXPECT_EQ(NextRedo(), "");
    Redo();
    EXPECT_EQ(Shown(), (QStringList{"1", "ABCD", "8", "EFGH", "3", "IJKL", "4", "MNOP"}));
}

TEST_F(UndoByKeys, ARefusedAndAnUnchangedTextAreNoEdits)
{
    TypeIntoCell(1, 2, "1");
    EXPECT_EQ(NextUndo(), "");
    const CModalAnswer answer(QMessageBox::Ok);
    TypeIntoCell(1, 2, "123456");
    EXPECT_EQ(answer.texts.size(), 1u);
    EXPECT_EQ(NextUndo(), "");
}

TEST_F(UndoByKeys, TheClosedWindowAsksOnlyWhereItIsNotAsSaved)
{
    TypeIntoCell(1, 2, "9");
    Undo();
    Redo();
    EXPECT_TRUE(ClosingAsks());
    EXPECT_EQ(ReadAll(folder / "a.rcp"), original);
}

TEST_F(UndoByKeys, GoesPastASaveAndTheCellIsEditedThen)
{
    TypeIntoCell(1, 2, "9");
    Save();
    EXPECT_FALSE(IsModified());
    EXPECT_EQ(ReadAll(folder / "a.rcp")[0], std::byte{9});
    Undo();
    EXPECT_EQ(Grid().GetItemText(1, 2), "1");
    EXPECT_TRUE(IsModified());
    EXPECT_TRUE(frame->Document().Rows().IsEdited(0, 0));
    Redo();
    EXPECT_FALSE(IsModified()) << "as saved";
    Undo();
    Save();
    EXPECT_FALSE(IsModified());
    EXPECT_EQ(ReadAll(folder / "a.rcp"), original);
    EXPECT_FALSE(ClosingAsks());
}

TEST_F(UndoByKeys, NewAndOpenEndTheHistory)
{
    TypeIntoCell(1, 2, "9");
    Undo();
    TypeIntoCell(2, 2, "8");
    Save();
    EXPECT_EQ(NextUndo(), "Typing");
    Key(Qt::Key_N, Qt::ControlModifier);
    Grid().setFocus();
    EXPECT_EQ(NextUndo() + NextRedo(), "");
    Undo();
    EXPECT_EQ(frame->windowTitle(), "Vantor[NoName]");
    TypeIntoCell(1, 2, "9");
    EXPECT_EQ(NextUndo(), "Typing");
    MakeFile("b.rcp");
    const CModalAnswer answer({ChoosePath(Path("new.rcp")), ChoosePath(Path("b.rcp"))}); // Save as, then Open
    Key(Qt::Key_O, Qt::ControlModifier);
    Activate();
    Grid().setFocus();
    EXPECT_EQ(Title(), TitleWith("b.rcp"));
    EXPECT_EQ(NextUndo() + NextRedo(), "");
}

TEST_F(UndoByKeys, BringsTheCellsIntoSight)
{
    auto& rows = Find<QLineEdit>("editReadCount");
    MakeFile("long.rcp", 3 * 500);
    rows.setFocus();
    TypeInto(*frame, "editReadCount", "500");
    OpenThroughDialog("long.rcp");
    ASSERT_EQ(Grid().RowCount(), 501);
    const auto isInSight = [this](int row) {
        return Grid().viewport()->rect().contains(Grid().visualRect(Grid().Model().BodyIndex(row, 2)));
    };
    PasteAt(2, 2, "1\n2\n3");
    ClickCell(2, 2);
    Key(Qt::Key_End, Qt::ControlModifier);
    ASSERT_FALSE(isInSight(2));
    Undo();
    EXPECT_EQ(Selected(), "2,2 3,2 4,2");
    for (const int row : {2, 3, 4})
        EXPECT_TRUE(isInSight(row)) << row;
    Key(Qt::Key_End, Qt::ControlModifier);
    QTest::keyClick(&Grid(), Qt::Key_Up);
    ASSERT_FALSE(isInSight(2));
    Redo();
    EXPECT_EQ(Selected(), "2,2 3,2 4,2");
    EXPECT_TRUE(isInSight(2) && isInSight(4));
    int row = 0;
    int column = 0;
    ASSERT_TRUE(Grid().FocusCell(row, column));
    EXPECT_EQ(row, 2);
    EXPECT_EQ(column, 2);
}

TEST_F(UndoByKeys, ACancelledPasteIsNoEdit)
{
    constexpr int kRows = 4'000'000; // some seconds of work
    MakeFile("long.rcp", 12);
    TypeInto(*frame, "editReadCount", QString::number(kRows));
    OpenThroughDialog("long.rcp");
    ASSERT_EQ(Grid().RowCount(), kRows + 1);
    TypeIntoCell(1, 2, "9");
    QApplication::clipboard()->setText("7");
    ClickCell(1, 2);
    Key(Qt::Key_Space, Qt::ControlModifier); // the column
    const CModalAnswer answer({[](QWidget& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); }});
    Key(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(answer.texts.size(), 1u);
    EXPECT_EQ(NextUndo(), "Typing");
    EXPECT_EQ(Grid().GetItemText(2, 2), "0");
}

TEST_F(UndoByKeys, WordsOfAFloatComeBackToTheByte)
{
    FormatLibrary library;
    library.formats.push_back(
        std::make_unique<DataFormat>(MakeFormat(u"Level", {MakeItem(u"Level", DataType::Float, 2, 4, 2)})));
    library.rowCount = 2;
    frame.reset();
    library.save(folder / "RecipeFile.Dat");
    const Bytes before = WordBytes({0xCCCD, 0x3F8C, 0x0000, 0x4020}); // 1.1 and 2.5
    WriteAll(folder / "f.rcp", before);
    Start();
    OpenThroughDialog("f.rcp");
    const QStringList shown = Shown();
    TypeIntoCell(1, 2, "7.25");
    Save();
    ASSERT_NE(ReadAll(folder / "f.rcp"), before);
    Undo();
    EXPECT_EQ(Shown(), shown);
    Save();
    EXPECT_EQ(ReadAll(folder / "f.rcp"), before);
}
