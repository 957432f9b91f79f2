#include "tests/views/MergeParamFixture.h"

#include <QAccessible>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

namespace {

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

TEST_F(MergeParam, NumbersCanBeReadHoweverSmallItIs)
{
    dialog->resize(dialog->minimumSizeHint());
    for (const char* name : {"editFirstPlace", "editFirstReadStart", "editFirstLength", "editSecondPlace",
                             "editSecondReadStart", "editSecondLength"}) {
        Type(name, "261632");
        auto& field = FindIn<QLineEdit>(*dialog, name);
        EXPECT_GT(field.width(), field.fontMetrics().horizontalAdvance("261632")) << name;
        QTest::keyClick(&field, Qt::Key_Home);
        const int start = field.inputMethodQuery(Qt::ImCursorRectangle).toRect().left();
        QTest::keyClick(&field, Qt::Key_End);
        EXPECT_GE(field.inputMethodQuery(Qt::ImCursorRectangle).toRect().left() - start,
                  field.fontMetrics().horizontalAdvance("261632") - 2)
            << name; // else its start is out of sight
    }
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

} // namespace
