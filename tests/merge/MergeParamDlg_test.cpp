#include "files/File.h"
#include "merge/MergeParamDlg.h"
#include "tests/files/FileSizeLimit.h"
#include "tests/support/DialogSteps.h"
#include "tests/support/GuiTest.h"
#include "tests/support/RecordingReporter.h"
#include "tests/support/TestFiles.h"

#include <QAccessible>
#include <QComboBox>
#include <QFileDialog>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <gtest/gtest.h>

#include <map>

namespace fs = std::filesystem;

namespace {

using Texts = std::vector<std::u16string>;
using Titles = std::vector<QString>;

constexpr std::size_t k128KBytes = 261'120;
constexpr std::size_t k256KBytes = 523'264;

/// The dialog over a folder with two files: first.rcp of ten words, second.rcp of two.
struct MergeParam : testing::Test {
    void SetUp() override
    {
        WriteAll(folder / "first.rcp", firstBytes);
        WriteAll(folder / "second.rcp", secondBytes);
        dialog = std::make_unique<CMergeParamDlg>(folder / "vantor", reporter);
        ASSERT_TRUE(ShowActive(*dialog));
    }

    QString Path(const std::string& name) const { return QString::fromStdString((folder / name).string()); }
    std::string Field(const QString& name) const { return TextIn(*dialog, name); }
    void Type(const QString& field, const QString& text) { TypeInto(*dialog, field, text); }
    void ClickMerge() { ClickOn(*dialog, "buttonMerge"); }

    /// The text of each field by its name.
    std::map<QString, QString> Fields() const
    {
        std::map<QString, QString> texts;
        for (const auto* field : dialog->findChildren<QLineEdit*>())
            texts[field->objectName()] = field->text();
        return texts;
    }

    /// Answers what comes up after a click on the button.
    void Answer(const QString& button, const CModalAnswer::Action& action, const QString& title)
    {
        const CModalAnswer answer({action});
        ClickOn(*dialog, button);
        EXPECT_EQ(answer.titles, Titles{title});
        EXPECT_TRUE(ShowActive(*dialog)); // the offscreen platform does not do it after a dialog
    }

    void ChooseFirst(const std::string& name) { Answer("buttonFirstPath", ChoosePath(Path(name)), "Open file"); }
    void ChooseSecond(const std::string& name) { Answer("buttonSecondPath", ChoosePath(Path(name)), "Open file"); }

    void ChooseMerged(const QString& name)
    {
        const auto typeName = [&](QWidget& savePath) {
            TypeInto(savePath, "editName", name);
            QTest::keyClick(savePath.focusWidget(), Qt::Key_Return);
        };
        Answer("buttonMergedPath", typeName, "Save Path Dialog");
    }

    /// Words 2 to 4 of the first file to 0, word 0 of the second to 5.
    void ChooseAll()
    {
        ChooseFirst("first.rcp");
        ChooseSecond("second.rcp");
        ChooseMerged("merged");
        Type("editFirstReadStart", "2");
        Type("editFirstLength", "3");
        Type("editSecondLength", "1");
        Type("editSecondPlace", "5");
    }

    void ExpectStaysOpen(const std::u16string& message, const std::map<QString, QString>& fields)
    {
        EXPECT_EQ(reporter.shown, Texts{message});
        EXPECT_TRUE(dialog->isVisible());
        EXPECT_EQ(Fields(), fields);
    }

    void ExpectClosedWithOk() const
    {
        EXPECT_TRUE(reporter.shown.empty());
        EXPECT_FALSE(dialog->isVisible());
        EXPECT_EQ(dialog->result(), QDialog::Accepted);
    }

    /// A merged file of `size` bytes that begins with `bytes` and is zero behind them.
    void ExpectMerged(std::size_t size, Bytes bytes) const
    {
        bytes.resize(size);
        EXPECT_EQ(ReadAll(folder / "merged.rcp"), bytes);
    }

    const Bytes firstBytes =
        WordBytes({0x1100, 0x1211, 0x1312, 0x1413, 0x1514, 0x1615, 0x1716, 0x1817, 0x1918, 0x1A19});
    const Bytes secondBytes = WordBytes({0x2B2A, 0x2C2B});
    const Bytes firstStretch = WordBytes({0x1312, 0x1413, 0x1514});
    const Bytes bothStretches = WordBytes({0x1312, 0x1413, 0x1514, 0, 0, 0x2B2A});
    CTempFolder folder; // its name has no capitals
    CRecordingReporter reporter;
    std::unique_ptr<CMergeParamDlg> dialog;
};

enum class Kind { Group, Radio, Label, Number, ReadOnly, Button };

struct ControlCase {
    int id;
    Kind kind;
    const char* text; ///< a field's is its initial content
    int parent;
};

// clang-format off
constexpr ControlCase kControls[] = { // as they stand from top to bottom
    {1111, Kind::Group,    "Merged file Type",                        139},
    {1095, Kind::Radio,    "128K Words",                             1111},
    {1096, Kind::Radio,    "256K Words",                             1111},
    {1112, Kind::Group,    "The Param of the first file",             139},
    {1113, Kind::Label,    "The Address in Merged file",             1112},
    {1093, Kind::Number,   "0",                                      1112},
    {1114, Kind::Label,    "words",                                  1112},
    {1099, Kind::Button,   "Path select",                            1112},
    {1097, Kind::ReadOnly, "",                                       1112},
    {1128, Kind::Label,    "File Length:",                           1112},
    {1130, Kind::ReadOnly, "",                                       1112},
    {1131, Kind::Label,    "Bytes",                                  1112},
    {1115, Kind::Label,    "The address of the file begins to read", 1112},
    {1105, Kind::Number,   "",                                       1112},
    {1116, Kind::Label,    "words",                                  1112},
    {1117, Kind::Label,    "Saving length:",                         1112},
    {1106, Kind::Number,   "",                                       1112},
    {1118, Kind::Label,    "words",                                  1112},
    {1119, Kind::Group,    "The Param of the second file",            139},
    {1120, Kind::Label,    "The Address in Merged file",             1119},
    {1094, Kind::Number,   "0",                                      1119},
    {1121, Kind::Label,    "words",                                  1119},
    {1101, Kind::Button,   "Path select",                            1119},
    {1100, Kind::ReadOnly, "",                                       1119},
    {1126, Kind::Label,    "File length:",                           1119},
    {1127, Kind::ReadOnly, "",                                       1119},
    {1129, Kind::Label,    "Bytes",                                  1119},
    {1122, Kind::Label,    "The Address of the file begins to read", 1119},
    {1107, Kind::Number,   "",                                       1119},
    {1124, Kind::Label,    "words",                                  1119},
    {1123, Kind::Label,    "Saving length:",                         1119},
    {1108, Kind::Number,   "",                                       1119},
    {1125, Kind::Label,    "words",                                  1119},
    {1109, Kind::Button,   "The Path for Merged file",                139},
    {1110, Kind::ReadOnly, "",                                        139},
    {   1, Kind::Button,   "Merge",                                   139},
    {   2, Kind::Button,   "Cancel",                                  139},
};
// clang-format on

QWidget* ById(const QWidget& dialog, int id)
{
    for (QWidget* widget : dialog.findChildren<QWidget*>())
        if (widget->property("controlId").toInt() == id)
            return widget;
    return nullptr;
}

bool IsOfKind(const QWidget* widget, Kind kind)
{
    const auto* field = qobject_cast<const QLineEdit*>(widget);
    switch (kind) {
    case Kind::Group:
        return qobject_cast<const QGroupBox*>(widget) != nullptr;
    case Kind::Radio:
        return qobject_cast<const QRadioButton*>(widget) != nullptr;
    case Kind::Label:
        return qobject_cast<const QLabel*>(widget) != nullptr;
    case Kind::Number:
        return field != nullptr && !field->isReadOnly();
    case Kind::ReadOnly:
        return field != nullptr && field->isReadOnly();
    case Kind::Button:
        return qobject_cast<const QPushButton*>(widget) != nullptr;
    }
    return false;
}

TEST_F(MergeParam, HasItsControlsFromTopToBottom)
{
    EXPECT_EQ(dialog->windowTitle(), "RecipeFile Merge Param Setting Dialog");
    EXPECT_EQ(dialog->property("controlId").toInt(), 139);
    int above = 0;
    for (const ControlCase& control : kControls) {
        const QWidget* widget = ById(*dialog, control.id);
        ASSERT_NE(widget, nullptr) << control.id;
        EXPECT_TRUE(IsOfKind(widget, control.kind)) << control.id;
        EXPECT_EQ(widget->property(control.kind == Kind::Group ? "title" : "text").toString(), control.text)
            << control.id;
        EXPECT_EQ(widget->parentWidget()->property("controlId").toInt(), control.parent) << control.id;
        EXPECT_FALSE(
            QAccessible::queryAccessibleInterface(ById(*dialog, control.id))->text(QAccessible::Name).isEmpty())
            << control.id;
        const int middle = widget->mapTo(dialog.get(), widget->rect().center()).y();
        EXPECT_TRUE(control.kind == Kind::Group || middle >= above - 2) << control.id;
        above = control.kind == Kind::Group ? above : middle;
    }
    EXPECT_TRUE(FindIn<QRadioButton>(*dialog, "radio128K").isChecked());
    EXPECT_FALSE(FindIn<QRadioButton>(*dialog, "radio256K").isChecked());
    EXPECT_TRUE(FindIn<QPushButton>(*dialog, "buttonMerge").isDefault());
}

TEST_F(MergeParam, EachFieldIsNamedByItsLabel)
{
    const std::pair<int, int> labels[] = {{1113, 1093}, {1128, 1130}, {1115, 1105}, {1117, 1106},
                                          {1120, 1094}, {1126, 1127}, {1122, 1107}, {1123, 1108}};
    for (const auto& [labelId, fieldId] : labels) {
        const auto* label = qobject_cast<QLabel*>(ById(*dialog, labelId));
        QWidget* field = ById(*dialog, fieldId);
        ASSERT_NE(label, nullptr) << labelId;
        EXPECT_EQ(label->buddy(), field) << labelId;
        EXPECT_EQ(QAccessible::queryAccessibleInterface(field)->text(QAccessible::Name), label->text()) << fieldId;
    }
}

TEST_F(MergeParam, TabGoesFromControlToControl)
{
    const QStringList expected{"radio128K",          "editFirstPlace",     "buttonFirstPath",     "editFirstPath",
                               "editFirstFileBytes", "editFirstReadStart", "editFirstLength",     "editSecondPlace",
                               "buttonSecondPath",   "editSecondPath",     "editSecondFileBytes", "editSecondReadStart",
                               "editSecondLength",   "buttonMergedPath",   "editMergedPath",      "buttonMerge",
                               "buttonCancel"};
    FindIn<QWidget>(*dialog, "radio128K").setFocus();
    QStringList order;
    for (qsizetype i = 0; i < expected.size(); ++i) {
        order << dialog->focusWidget()->objectName();
        QTest::keyClick(dialog->focusWidget(), Qt::Key_Tab);
    }
    EXPECT_EQ(order, expected);
}

TEST_F(MergeParam, EachSizeTakesTheOthersPlace)
{
    auto& small = FindIn<QRadioButton>(*dialog, "radio128K");
    auto& large = FindIn<QRadioButton>(*dialog, "radio256K");
    QTest::mouseClick(&large, Qt::LeftButton, {}, QPoint(8, large.height() / 2));
    EXPECT_TRUE(large.isChecked());
    EXPECT_FALSE(small.isChecked());
    QTest::keyClick(&large, Qt::Key_Left);
    EXPECT_TRUE(small.isChecked());
    EXPECT_FALSE(large.isChecked());
}

TEST_F(MergeParam, PathsAndLengthsCannotBeTypedInto)
{
    for (const char* name :
         {"editFirstPath", "editFirstFileBytes", "editSecondPath", "editSecondFileBytes", "editMergedPath"}) {
        Type(name, "7");
        EXPECT_EQ(Field(name), "") << name;
    }
}

struct SourceCase {
    const char* name;
    const char* button;
    const char* path;
    const char* bytes;
    const char* readStart;
    const char* length;
    const char* place;
    const char16_t* cannotOpen;
    friend void PrintTo(const SourceCase& c, std::ostream* out) { *out << c.name; }
};
struct ChosenSource : MergeParam, testing::WithParamInterface<SourceCase> {
    void Choose(const std::string& name) { Answer(GetParam().button, ChoosePath(Path(name)), "Open file"); }
};

TEST_P(ChosenSource, ShowsItsPathAndLengthAndIsTakenWhole)
{
    WriteAll(folder / "nine.rcp", Bytes(9));
    Type(GetParam().place, "33");
    Type(GetParam().readStart, "7");
    auto expected = Fields();
    Choose("nine.rcp");
    expected[GetParam().path] = Path("nine.rcp");
    expected[GetParam().bytes] = "9";
    expected[GetParam().readStart] = "0";
    expected[GetParam().length] = "4"; // the odd byte is not counted
    EXPECT_EQ(Fields(), expected);
    EXPECT_TRUE(reporter.shown.empty());
}

TEST_P(ChosenSource, MayBeLongerThan32BitsCount)
{
    WriteAll(folder / "long.rcp", {});
    fs::resize_file(folder / "long.rcp", 6'000'000'001); // takes no room on the disk
    Choose("long.rcp");
    EXPECT_EQ(Field(GetParam().bytes), "6000000001");
    EXPECT_EQ(Field(GetParam().length), "3000000000");
}

TEST_P(ChosenSource, MayBeNamedWithoutItsEnding)
{
    Choose("first");
    EXPECT_EQ(Field(GetParam().path), Path("first.rcp").toStdString());
}

TEST_P(ChosenSource, ThatCannotBeOpenedIsReportedAndChangesNothing)
{
    Choose("first.rcp");
    Type(GetParam().length, "2");
    const auto fields = Fields();
    Choose("gone.rcp");
    ExpectStaysOpen(u"Can't open file " + PathText(folder / "gone.rcp") + GetParam().cannotOpen, fields);
    EXPECT_FALSE(fs::exists(folder / "gone.rcp"));
}

TEST_P(ChosenSource, ThatIsCancelledChangesNothing)
{
    Choose("first.rcp");
    Type(GetParam().length, "2");
    const auto fields = Fields();
    Answer(GetParam().button, CancelDialog(), "Open file");
    EXPECT_EQ(Fields(), fields);
    EXPECT_TRUE(reporter.shown.empty());
}

TEST_P(ChosenSource, IsLookedForAmongTheRecipeFilesBesideTheOneBefore)
{
    fs::create_directory(folder / "sub");
    WriteAll(folder / "sub" / "a.rcp", Bytes(2));
    Choose("sub/a.rcp");
    QStringList filters;
    QString start;
    const auto look = [&](QWidget& window) {
        const auto& files = dynamic_cast<QFileDialog&>(window);
        filters = files.nameFilters();
        start = files.directory().path();
        QTest::keyClick(&window, Qt::Key_Escape);
    };
    Answer(GetParam().button, look, "Open file");
    EXPECT_EQ(filters, QStringList{"(*.rcp)"});
    EXPECT_EQ(start, Path("sub"));
}

TEST_P(ChosenSource, WithALongPathShowsItsEndAndTheWholeInATip)
{
    const fs::path deep = folder / std::string(120, 'd') / std::string(120, 'e');
    fs::create_directories(deep);
    WriteAll(deep / "a.rcp", Bytes(2));
    Choose(fs::relative(deep / "a.rcp", folder.Path()).string());
    const auto& field = FindIn<QLineEdit>(*dialog, GetParam().path);
    EXPECT_EQ(field.cursorPosition(), field.text().size());
    EXPECT_TRUE(field.toolTip().contains(QString::fromStdString((deep / "a.rcp").string())));
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, ChosenSource, testing::Values(
    SourceCase{"First", "buttonFirstPath", "editFirstPath", "editFirstFileBytes", "editFirstReadStart",
               "editFirstLength", "editFirstPlace", u",it can't be mergered!"}, // kept
    SourceCase{"Second", "buttonSecondPath", "editSecondPath", "editSecondFileBytes", "editSecondReadStart",
               "editSecondLength", "editSecondPlace", u",it can't be merged!"}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST_F(MergeParam, TheSecondFileIsLookedForBesideTheFirst)
{
    ChooseFirst("first.rcp");
    QString start;
    const auto look = [&](QWidget& window) {
        start = dynamic_cast<QFileDialog&>(window).directory().path();
        QTest::keyClick(&window, Qt::Key_Escape);
    };
    Answer("buttonSecondPath", look, "Open file");
    EXPECT_EQ(start.toStdString(), folder.Path().string());
}

TEST_F(MergeParam, TheMergedPathIsThatOfTheSavePathDialog)
{
    ChooseMerged("merged");
    EXPECT_EQ(Field("editMergedPath"), Path("merged.rcp").toStdString());
    EXPECT_FALSE(fs::exists(folder / "merged.rcp"));
}

TEST_F(MergeParam, ACancelledSavePathDialogLeavesTheMergedPath)
{
    ChooseMerged("merged");
    const auto cancel = [](QWidget& savePath) {
        TypeInto(savePath, "editName", "other");
        QTest::keyClick(savePath.focusWidget(), Qt::Key_Escape);
    };
    Answer("buttonMergedPath", cancel, "Save Path Dialog");
    EXPECT_EQ(Field("editMergedPath"), Path("merged.rcp").toStdString());
}

TEST_F(MergeParam, TheSavePathDialogRemembersNothing)
{
    ChooseMerged("merged");
    std::string name = "?";
    std::string path;
    const auto look = [&](QWidget& savePath) {
        name = TextIn(savePath, "editName");
        path = TextIn(savePath, "editPath");
        QTest::keyClick(&savePath, Qt::Key_Escape);
    };
    Answer("buttonMergedPath", look, "Save Path Dialog");
    EXPECT_EQ(name, "");
    EXPECT_EQ(path, (folder / "").string());
}

TEST_F(MergeParam, WithNothingChosenAsksForTheFirstFile)
{
    const auto fields = Fields();
    QTest::keyClick(dialog->focusWidget(), Qt::Key_Return);
    ExpectStaysOpen(u"Please select the first file  which you want to merge!", fields);
}

TEST_F(MergeParam, WithoutASecondFileAsksForIt)
{
    ChooseFirst("first.rcp");
    const auto fields = Fields();
    ClickMerge();
    ExpectStaysOpen(u"Please select the second file which you want to merge!", fields);
}

TEST_F(MergeParam, WithoutAMergedPathAsksForIt)
{
    ChooseFirst("first.rcp");
    ChooseSecond("second.rcp");
    const auto fields = Fields();
    ClickMerge();
    ExpectStaysOpen(u"Please select the appropriate name and path for the merging file!", fields);
}

struct CheckCase {
    const char* name;
    std::vector<std::pair<const char*, const char*>> typed;
    const char16_t* message;
    friend void PrintTo(const CheckCase& c, std::ostream* out) { *out << c.name; }
};

/// Of a file of 200,000 words 100 are to go to 0, of a second one with a byte more 50 to 100, in all 128K words.
struct RefusedParam : MergeParam, testing::WithParamInterface<CheckCase> {
    void SetUp() override
    {
        MergeParam::SetUp();
        fs::resize_file(folder / "first.rcp", 400'000);
        fs::resize_file(folder / "second.rcp", 400'001);
        ChooseFirst("first.rcp");
        ChooseSecond("second.rcp");
        ChooseMerged("merged");
        Type("editFirstLength", "100");
        Type("editSecondPlace", "100");
        Type("editSecondLength", "50");
    }
};

TEST_P(RefusedParam, IsReportedAndTheFieldsStayAsTyped)
{
    for (const auto& [field, text] : GetParam().typed)
        Type(field, text);
    const auto fields = Fields();
    ClickMerge();
    ExpectStaysOpen(GetParam().message, fields);
    EXPECT_FALSE(fs::exists(folder / "merged.rcp"));
}

constexpr const char16_t* kFirstLength = u"The first file's reading length   cann't be zero or negative!";
constexpr const char16_t* kFirstPlaceTooLarge =
    u"The first file's saving location is too large ,which can lead to the second file can't be merged!";
constexpr const char16_t* kSecondLength = u"The second file's reading length  can not be negative!"; // kept: zero too
constexpr const char16_t* kSecondInFirst =
    u"The second file's saving location in merged file should be larger than the sum of the first file's reading "
    u"length and it's saving location in the merged file!";
constexpr const char16_t* kSecondBeforeFirst =
    u"The second file's saving location in merged file should be larger than the first file's saving location in the "
    u"merged file!";

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, RefusedParam, testing::Values(
    CheckCase{"FirstPlaceNegative", {{"editFirstPlace", "-1"}},
        u"The first file's saving location in the merged file can not be negative!"},
    CheckCase{"FirstReadStartNegative", {{"editFirstReadStart", "-1"}},
        u"The first file's reading location  cann't be negative!"},
    CheckCase{"FirstLengthZero", {{"editFirstLength", "0"}}, kFirstLength},
    CheckCase{"FirstLengthOfLetters", {{"editFirstLength", "abc"}}, kFirstLength},
    CheckCase{"FirstLengthEmpty", {{"editFirstLength", ""}}, kFirstLength},
    CheckCase{"FirstPlaceBehindTheEnd", {{"editFirstPlace", "130560"}}, kFirstPlaceTooLarge},
    CheckCase{"LettersBehindANumber", {{"editFirstPlace", " 130560ab"}}, kFirstPlaceTooLarge},
    CheckCase{"FirstLastPlace", {{"editFirstPlace", "130559"}, {"editFirstLength", "1"}}, kSecondBeforeFirst},
    CheckCase{"FirstLengthBehindTheFile", {{"editFirstLength", "200001"}},
        u"The first file's reading length is larger than it's total length!"},
    CheckCase{"FirstReadStartBehindTheFile", {{"editFirstReadStart", "200001"}},
        u"The first file's location for  reading  is larger than it's total length!"},
    CheckCase{"FirstReadRange", {{"editFirstReadStart", "199950"}}, // kept: start and length in this order
        u"The first file can't be read 199950 words from the starting location 100 ,the number is larger than it's "
        u"toltal length 200000 words"},
    CheckCase{"FirstPlaceAndLength", {{"editFirstPlace", "130500"}}, // kept: the length in place of the merged file's
        u"The first file's saving location 130500 in merged file and it's reading length don't match with the merged "
        u"file , the  sum of them is larger than this merged file's length 100!"},
    CheckCase{"SecondPlaceNegative", {{"editSecondPlace", "-1"}},
        u"The second file's saving location in the merged file can not be negative!"},
    CheckCase{"SecondReadStartNegative", {{"editSecondReadStart", "-1"}},
        u"The second file's reading location  can not be negative!"},
    CheckCase{"SecondLengthZero", {{"editSecondLength", "0"}}, kSecondLength},
    CheckCase{"SecondLengthOfLetters", {{"editSecondLength", "abc"}}, kSecondLength},
    CheckCase{"SecondPlaceBehindTheEnd", {{"editSecondPlace", "130560"}},
        u"The second file's saving location in the merged file is too larger,which will lead to this app can't merge "
        u"file!"},
    CheckCase{"SecondLengthBehindTheFile", {{"editSecondLength", "200001"}},
        u"The second file's reading length is larger than it's total length!"},
    CheckCase{"SecondReadStartBehindTheFile", {{"editSecondReadStart", "200001"}},
        u"The second file's reading location is larger than it's total length!"},
    CheckCase{"SecondReadRange", {{"editFirstReadStart", "7"}, {"editSecondReadStart", "199960"}}, // kept: the first's
        u"The secong file  can't be read 7  words from the starting location 100 ,the number is larger than it's "
        u"toltal length 200000 words"},
    CheckCase{"SecondPlaceAndLength", {{"editFirstPlace", "3"}, {"editSecondPlace", "130520"}}, // kept: the first's
        u"The second file's saving location 3 in merged file and it's reading length don't match with the merged "
        u"file , the  sum of them is larger than this merged file's length 100!"},
    CheckCase{"SecondPlaceAndLengthOfTwoLongOnes",
        {{"editFirstLength", "70000"}, {"editSecondLength", "70000"}, {"editSecondPlace", "70000"}}, // kept
        u"The second file's saving location 0 in merged file and it's reading length don't match with the merged "
        u"file , the  sum of them is larger than this merged file's length 70000!"},
    CheckCase{"BothLengths", {{"editFirstPlace", "1"}, {"editFirstLength", "70000"}, // kept: the first's place
                              {"editSecondPlace", "60000"}, {"editSecondLength", "70000"}},
        u"The sum of these two file's reading length is larger than the merged file's length 1 !"},
    CheckCase{"SecondBeforeTheFirst", {{"editFirstPlace", "50"}, {"editSecondPlace", "49"}}, kSecondBeforeFirst},
    CheckCase{"SecondInTheFirst", {{"editSecondPlace", "99"}}, kSecondInFirst},
    CheckCase{"SecondAtTheFirst", {{"editSecondPlace", "0"}}, kSecondInFirst}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST_F(MergeParam, MergesBothStretchesAndCloses)
{
    ChooseAll();
    ClickMerge();
    ExpectClosedWithOk();
    ExpectMerged(k128KBytes, bothStretches);
    EXPECT_EQ(ReadAll(folder / "first.rcp"), firstBytes);
    EXPECT_EQ(ReadAll(folder / "second.rcp"), secondBytes);
}

TEST_F(MergeParam, MergesTheSecondRightBehindTheFirstAtEnter)
{
    ChooseAll();
    Type("editSecondPlace", "3");
    QTest::keyClick(dialog->focusWidget(), Qt::Key_Return);
    ExpectClosedWithOk();
    ExpectMerged(k128KBytes, WordBytes({0x1312, 0x1413, 0x1514, 0x2B2A}));
}

TEST_F(MergeParam, MergesIntoTheLargerSize)
{
    ChooseAll();
    FindIn<QWidget>(*dialog, "radio128K").setFocus();
    QTest::keyClick(dialog->focusWidget(), Qt::Key_Right);
    Type("editSecondPlace", "261631"); // the last word
    ClickMerge();
    ExpectClosedWithOk();
    Bytes expected = firstStretch;
    expected.resize(k256KBytes - 2);
    expected.insert(expected.end(), secondBytes.begin(), secondBytes.begin() + 2);
    ExpectMerged(k256KBytes, expected);
}

TEST_F(MergeParam, MergesAfterARefusalWasPutRight)
{
    ChooseAll();
    Type("editSecondPlace", "2");
    ClickMerge();
    EXPECT_EQ(reporter.shown, Texts{kSecondInFirst});
    reporter.shown.clear();
    Type("editSecondPlace", "5");
    ClickMerge();
    ExpectClosedWithOk();
    ExpectMerged(k128KBytes, bothStretches);
}

TEST_F(MergeParam, ReplacesALongerFileEntirely)
{
    WriteAll(folder / "merged.rcp", Bytes(300'000, std::byte{0xFF}));
    reporter.answer = true;
    ChooseAll();
    EXPECT_EQ(reporter.asked.size(), 1u);
    ClickMerge();
    ExpectClosedWithOk();
    ExpectMerged(k128KBytes, bothStretches);
}

TEST_F(MergeParam, KeepsTheBlanksAroundTheMergedName)
{
    ChooseAll();
    ChooseMerged(" b ");
    ClickMerge();
    ExpectClosedWithOk();
    EXPECT_TRUE(fs::exists(folder / " b .rcp"));
}

TEST_F(MergeParam, MergedFileThatCannotBeCreatedIsReported)
{
    fs::create_directory(folder / "merged.rcp");
    ChooseAll();
    const auto fields = Fields();
    ClickMerge();
    ExpectStaysOpen(u"Merge file " + PathText(folder / "merged.rcp") + u" failed!", fields);
    EXPECT_TRUE(fs::is_empty(folder / "merged.rcp"));
}

TEST_F(MergeParam, FirstFileDeletedSinceItWasChosenIsReportedAndLeavesZeros)
{
    ChooseAll();
    fs::remove(folder / "first.rcp");
    const auto fields = Fields();
    ClickMerge();
    ExpectStaysOpen(u"Open file " + PathText(folder / "first.rcp") + u" failed!", fields);
    ExpectMerged(k128KBytes, {});
}

TEST_F(MergeParam, SecondFileDeletedSinceItWasChosenIsReportedAndLeavesTheFirstStretch)
{
    ChooseAll();
    fs::remove(folder / "second.rcp");
    const auto fields = Fields();
    ClickMerge();
    ExpectStaysOpen(u"Open file " + PathText(folder / "second.rcp") + u" failed!", fields);
    ExpectMerged(k128KBytes, firstStretch);
    WriteAll(folder / "second.rcp", secondBytes); // and the next try succeeds
    reporter.shown.clear();
    ClickMerge();
    ExpectClosedWithOk();
    ExpectMerged(k128KBytes, bothStretches);
}

TEST_F(MergeParam, AFullDiskIsReportedAndLeavesWhatWasWritten)
{
    ChooseAll();
    const auto fields = Fields();
    {
        const CFileSizeLimit limit(1000);
        ClickMerge();
    }
    ASSERT_EQ(reporter.shown.size(), 1u);
    EXPECT_TRUE(reporter.shown[0].starts_with(u"Merge file " + PathText(folder / "merged.rcp") + u" failed!"));
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_EQ(Fields(), fields);
    ExpectMerged(1000, {});
}

TEST_F(MergeParam, AMergeIntoOneOfTheSourcesIsRefused)
{
    reporter.answer = true;
    ChooseAll();
    ChooseMerged("first");
    const auto fields = Fields();
    ClickMerge();
    ExpectStaysOpen(u"Merge file " + PathText(folder / "first.rcp") + u" failed!", fields);
    EXPECT_EQ(ReadAll(folder / "first.rcp"), firstBytes);
}

struct Cancelled : MergeParam, testing::WithParamInterface<const char*> {};

TEST_P(Cancelled, ClosesAndWritesNothing)
{
    ChooseAll();
    if (GetParam() == std::string("Escape"))
        QTest::keyClick(dialog->focusWidget(), Qt::Key_Escape);
    else
        ClickOn(*dialog, "buttonCancel");
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(dialog->result(), QDialog::Rejected);
    EXPECT_TRUE(reporter.shown.empty());
    EXPECT_FALSE(fs::exists(folder / "merged.rcp"));
}

INSTANTIATE_TEST_SUITE_P(Ways, Cancelled, testing::Values("Escape", "Button"),
                         [](const auto& c) { return std::string(c.param); });

} // namespace
