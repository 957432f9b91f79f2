#include "tests/views/ItemDialogFixture.h"
#include "views/NewFormatNameDlg.h"

#include <QAccessible>
#include <QLabel>
#include <QTest>

// What the dialogs of items and formats tell before OK, in lines of their own.

namespace {

const QString kNoNumber = QStringLiteral("These digits give the limits 0 to -1: no number will be accepted.");
const QString kTooLong = QStringLiteral("A description has at most 127 characters: the rest is left out.");

/// What a screen reader tells of `widget` besides its name.
QString Description(QWidget& widget)
{
    return QAccessible::queryAccessibleInterface(&widget)->text(QAccessible::Description);
}

/// Whether all of the line `label` can be read: it is as high as its text needs, and nothing lies over it.
void ExpectReadable(const QLabel& label)
{
    EXPECT_GE(label.height(), label.heightForWidth(label.width()));
    const QRect place(label.mapTo(label.window(), QPoint()), label.size());
    EXPECT_TRUE(label.window()->rect().contains(place));
    for (const QWidget* other : label.window()->findChildren<QWidget*>()) {
        const QRect otherPlace(other->mapTo(label.window(), QPoint()), other->size());
        const bool isApart = other == &label || !other->isVisible() || other->isAncestorOf(&label);
        EXPECT_TRUE(isApart || !place.intersects(otherPlace)) << other->objectName().toStdString();
    }
}

struct LimitsLine : ItemDialog {
    const QLabel& Line() const { return Find<QLabel>("labelLimitsNotice"); }
    QString Told() const { return Line().isVisible() ? Line().text() : QString(); }
    void Settle() { QCoreApplication::processEvents(); }
};

struct DescriptionLine : ItemDialog {
    QString Told() const
    {
        QCoreApplication::processEvents(); // the keys and all that they bring about
        const auto& line = Find<QLabel>("labelDescriptionNotice");
        return line.isVisible() ? line.text() : QString();
    }
    void Press(Qt::Key key) { QTest::keyClick(&Find<QWidget>("editDescription"), key); }
};

struct NameLine : testing::Test {
    void SetUp() override { ASSERT_TRUE(ShowActive(dialog)); }

    const QLabel& Line() const { return FindIn<QLabel>(dialog, "labelNotice"); }
    QString Told() const { return Line().isVisible() ? Line().text() : QString(); }

    CRecordingReporter reporter;
    CNewFormatNameDlg dialog{reporter};
};

} // namespace

TEST_F(LimitsLine, TellsBeforeOkThatNoNumberWillPass)
{
    Add();
    EXPECT_EQ(Told(), "");
    ChooseType(DataType::Signed32);
    Choose("comboInteger", "9");
    EXPECT_EQ(Told(), "");
    ChooseType(DataType::Hex32);
    EXPECT_EQ(Told(), kNoNumber);
    Choose("comboInteger", "8");
    EXPECT_EQ(Told(), "");
}

TEST_F(LimitsLine, TellsThatTheTypeHoldsLess)
{
    Add();
    ChooseType(DataType::Signed32);
    Choose("comboInteger", "8");
    ChooseType(DataType::Hex16);
    EXPECT_EQ(Told(),
              "The type holds 0 to FFFF. With these digits larger numbers are accepted, too, and stored as others.");
    ChooseType(DataType::Signed16);
    Choose("comboInteger", "3");
    Choose("comboDecimal", "2");
    EXPECT_EQ(
        Told(),
        "The type holds -327.68 to 327.67. With these digits larger numbers are accepted, too, and stored as others.");
    ChooseType(DataType::String);
    EXPECT_EQ(Told(), "");
}

TEST_F(LimitsLine, TellsOfAnItemThatIsOpened)
{
    Modify(MakeItem(u"Mask", DataType::Hex32, 2, 9));
    EXPECT_EQ(Told(), kNoNumber);
}

TEST_F(LimitsLine, ChangesNothingOfWhatIsStored)
{
    Modify(MakeItem(u"Mask", DataType::Hex32, 2, 9));
    PressOk();
    ASSERT_TRUE(IsAccepted());
    EXPECT_EQ(reporter.shown, Shown{});
    EXPECT_EQ(item.integerDigits, 9);
    EXPECT_EQ(item.minValue, 0);
    EXPECT_EQ(item.maxValue, -1);
}

TEST_F(LimitsLine, CanBeReadWithAndWithoutAnArrayLength)
{
    Modify(MakeItem(u"Mask", DataType::Hex16, 1, 8));
    const int height = dialog->height();
    ExpectReadable(Line());
    Click("radioArray");
    Settle();
    ASSERT_TRUE(IsShown("groupArrayLength"));
    ExpectReadable(Line());
    Click("radioSingle");
    Settle();
    ExpectReadable(Line());
    EXPECT_GE(dialog->height(), height);

    Add();
    Click("radioArray");
    ChooseType(DataType::Signed32);
    Choose("comboInteger", "9");
    ChooseType(DataType::Hex32);
    Settle();
    ExpectReadable(Line());
}

TEST_F(LimitsLine, HasRoomWhereASingleItemHasNoArrayLength)
{
    Add();
    const QSize size = dialog->size();
    ChooseType(DataType::Signed32);
    Choose("comboInteger", "9");
    ChooseType(DataType::Hex32);
    Settle();
    EXPECT_EQ(Told(), kNoNumber);
    EXPECT_EQ(dialog->size(), size);
}

TEST_F(LimitsLine, IsToldByScreenReaders)
{
    Add();
    ChooseType(DataType::Signed32);
    Choose("comboInteger", "9");
    ChooseType(DataType::Hex32);
    for (const char* list : {"comboType", "comboInteger", "comboDecimal"})
        EXPECT_EQ(Description(Find<QWidget>(list)), kNoNumber) << list;
    Choose("comboInteger", "8");
    EXPECT_EQ(Description(Find<QWidget>("comboType")), "");
}

TEST_F(DescriptionLine, TellsThatATypedTextIsTooLong)
{
    Add();
    Type("editDescription", QString(127, 'd'));
    EXPECT_EQ(Told(), "");
    QTest::keyClicks(&Find<QWidget>("editDescription"), "d");
    EXPECT_EQ(Told(), kTooLong);
    EXPECT_EQ(Description(Find<QWidget>("editDescription")), kTooLong);
    ExpectReadable(Find<QLabel>("labelDescriptionNotice"));
    Press(Qt::Key_Backspace);
    EXPECT_EQ(Told(), "");
    EXPECT_EQ(Description(Find<QWidget>("editDescription")), Find<QWidget>("editDescription").toolTip());
}

TEST_F(DescriptionLine, TellsThatAPastedTextWasCut)
{
    Add();
    PasteInto(*dialog, "editDescription", QString(128, 'd'));
    EXPECT_EQ(Told(), kTooLong);
    PasteInto(*dialog, "editDescription", QString(127, 'd'));
    EXPECT_EQ(Told(), "");
    PasteInto(*dialog, "editDescription", QString(126, 'd') + QStringLiteral(u"\U0001F525"));
    EXPECT_EQ(Told(), kTooLong);
    EXPECT_EQ(Text("editDescription"), std::string(126, 'd'));
}

TEST_F(DescriptionLine, ThatAScreenReaderPutInEndsWithAWholeCharacter)
{
    Add();
    QAccessibleInterface* field = QAccessible::queryAccessibleInterface(&Find<QWidget>("editDescription"));
    field->setText(QAccessible::Value, QString(126, 'd') + QStringLiteral(u"\U0001F525"));
    PressOk();
    EXPECT_EQ(TextOf(item.description), std::u16string(126, u'd'));
}

TEST_F(DescriptionLine, OfTheLibraryEndsWithAWholeCharacter)
{
    DataItem full = MakeItem(u"", DataType::Signed16, 1, 5);
    full.description.fill(u'd');
    full.description[126] = u'\xD83D';
    full.description[127] = u'\xDD25'; // no zero ends it
    Modify(full);
    PressOk();
    EXPECT_EQ(TextOf(item.description), std::u16string(126, u'd'));
}

TEST_F(NameLine, TellsWhileALongNameIsTyped)
{
    TypeInto(dialog, "editName", QString(64, 'n'));
    EXPECT_EQ(Told(), "");
    QTest::keyClicks(dialog.focusWidget(), "n");
    EXPECT_EQ(Told(), "All 65 characters are saved, but only the first 64 are read at the next start.");
    EXPECT_EQ(Description(FindIn<QWidget>(dialog, "editName")), Told());
    QCoreApplication::processEvents();
    ExpectReadable(Line());
    QTest::keyClick(dialog.focusWidget(), Qt::Key_Backspace);
    EXPECT_EQ(Told(), "");
}

TEST_F(NameLine, TellsOfTheNameWithoutTheBlanksAroundIt)
{
    TypeInto(dialog, "editName", ' ' + QString(64, 'n') + "   ");
    EXPECT_EQ(Told(), "");
    TypeInto(dialog, "editName", ' ' + QString(128, 'n'));
    EXPECT_EQ(Told(), "Of 128 characters the first 127 are saved, and only the first 64 are read at the next start.");
    QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_EQ(dialog.Name(), QString(128, 'n'));
}
