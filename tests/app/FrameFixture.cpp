#include "tests/app/FrameFixture.h"

#include "controls/GridCtrl.h"
#include "library/FormatLibrary.h"

#include <QDir>
#include <QLineEdit>
#include <QTest>

FrameFixture::FrameFixture()
{
    FormatLibrary library;
    library.formats.push_back(std::make_unique<DataFormat>(
        MakeFormat(u"Row", {MakeItem(u"Word", DataType::Signed16, 1, 5), MakeItem(u"Name", DataType::String, 2, 0)})));
    library.rowCount = 4;
    library.save(folder / "RecipeFile.Dat");
}

FrameFixture::~FrameFixture() = default;

void FrameFixture::Start()
{
    frame = std::make_unique<CMainFrame>(folder / "vantor");
    ASSERT_TRUE(ShowActive(*frame));
}

CGridCtrl& FrameFixture::Grid()
{
    return *frame->findChild<CGridCtrl*>();
}

QAction& FrameFixture::Action(const QString& name)
{
    auto* action = frame->findChild<QAction*>(name);
    if (action == nullptr)
        throw std::runtime_error("no action " + name.toStdString());
    return *action;
}

QString FrameFixture::Path(const std::string& name) const
{
    return QDir::toNativeSeparators(QString::fromStdString((folder / name).string()));
}

std::string FrameFixture::TitleWith(const std::string& name) const
{
    return "Vantor[" + Path(name).toStdString() + "]";
}

QString FrameFixture::MakeFile(const std::string& name, std::size_t words)
{
    WriteAll(folder / name, Bytes(2 * words));
    return Path(name);
}

void FrameFixture::OpenThroughDialog(const std::string& name)
{
    const CModalAnswer answer({ChoosePath(Path(name))});
    Trigger(*frame, "actionOpen");
    EXPECT_EQ(answer.titles, std::vector<QString>{"Open file"});
    EXPECT_TRUE(ShowActive(*frame)); // the offscreen platform does not do it after a dialog
}

void FrameFixture::ClickCell(int row, int column)
{
    const QModelIndex index = Grid().model()->index(row - 1, column - 2);
    QTest::mouseClick(Grid().viewport(), Qt::LeftButton, {}, Grid().visualRect(index).center());
}

void FrameFixture::TypeIntoCell(int row, int column, const QString& text, Qt::Key key)
{
    ClickCell(row, column);
    QTest::keyClick(&Grid(), Qt::Key_F2);
    QWidget* editor = frame->focusWidget();
    ASSERT_NE(qobject_cast<QLineEdit*>(editor), nullptr) << "no editor opened";
    QTest::keyClick(editor, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(editor, text);
    QTest::keyClick(editor, key);
}
