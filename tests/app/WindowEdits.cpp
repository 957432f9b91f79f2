// vantor-window-edits LIBRARY_FOLDER FILE DATA_FOLDER SEED COMMANDS: the window keeps what is not saved in DATA_FOLDER
// and opens FILE, or with "" begins a new document. Its user does so many commands at random, by keys and clicks.
// Prints a line once the document is open and one after each command (EditLog.h), then stays until somebody ends it.

#include "app/MainFrame.h"
#include "app/VantorApp.h"
#include "controls/GridCtrl.h"
#include "disk/File.h"
#include "tests/app/EditLog.h"
#include "tests/support/GuiTest.h"

#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <cstdio>
#include <random>

namespace {

constexpr int kWord = 2; ///< columns of the grid
constexpr int kName = 3;

class CUser {
public:
    CUser(CMainFrame& frame, const QString& file, unsigned seed)
        : m_frame(frame),
          m_grid(*frame.findChild<CGridCtrl*>()),
          m_file(file),
          m_random(seed)
    {
    }

    void Open()
    {
        if (m_file.isEmpty())
            QTest::keyClick(&m_frame, Qt::Key_N, Qt::ControlModifier);
        else
            m_frame.OpenPath(m_file);
        Log("open");
    }

    void DoCommand()
    {
        const bool hasFile = !m_file.isEmpty();
        const int choice = Below(hasFile ? 20 : 14);
        if (choice < 6)
            Type();
        else if (choice < 8)
            Paste();
        else if (choice < 10)
            Press("clear", 1 + Below(Rows()), kName, Qt::Key_Delete, {});
        else if (choice < 12)
            Press("undo", 1, kWord, Qt::Key_Z, Qt::ControlModifier);
        else if (choice < 14)
            Press("redo", 1, kWord, Qt::Key_Y, Qt::ControlModifier);
        else if (choice < 16)
            Press("save", 1, kWord, Qt::Key_S, Qt::ControlModifier);
        else if (choice < 18)
            Press("save edited", 1, kWord, Qt::Key_F9, Qt::ShiftModifier);
        else
            ReadAgain();
    }

private:
    int Below(int bound) { return static_cast<int>(m_random() % static_cast<unsigned>(bound)); }
    int Rows() { return m_grid.RowCount() - 1; }
    QString Number() { return QString::number(1 + Below(9999)); }
    QString Name() { return QString(1 + Below(2), QLatin1Char(static_cast<char>('a' + Below(26)))); }

    void Choose(int row, int column)
    {
        const QModelIndex index = m_grid.model()->index(row - 1, column - 2);
        QTest::mouseClick(m_grid.viewport(), Qt::LeftButton, {}, m_grid.visualRect(index).center());
    }

    void Type()
    {
        const bool isNumber = Below(2) == 0;
        Choose(1 + Below(Rows()), isNumber ? kWord : kName);
        QTest::keyClick(&m_grid, Qt::Key_F2);
        auto* editor = qobject_cast<QLineEdit*>(m_frame.focusWidget());
        if (editor == nullptr)
            return Log("no editor");
        QTest::keyClick(editor, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(editor, isNumber ? Number() : Name());
        QTest::keyClick(editor, Qt::Key_Return);
        Log("type");
    }

    void Paste()
    {
        QApplication::clipboard()->setText(Number() + '\t' + Name() + '\n' + Number() + '\t' + Name());
        Press("paste", 1 + Below(Rows() - 1), kWord, Qt::Key_V, Qt::ControlModifier);
    }

    void Press(const char* command, int row, int column, Qt::Key key, Qt::KeyboardModifiers modifiers)
    {
        Choose(row, column);
        QTest::keyClick(&m_grid, key, modifiers);
        Log(command);
    }

    void ReadAgain()
    {
        QTest::mouseClick(m_frame.findChild<QPushButton*>(QStringLiteral("buttonRefreshData")), Qt::LeftButton);
        Log("read again");
    }

    void Log(const char* command)
    {
        const CRecipeRows& rows = m_frame.Document().Rows();
        EditLogLine line{command, ChecksumOfFile(m_file.toStdString()), {}, ShownTexts(m_grid)};
        for (const CellPlace place : rows.EditedPlaces())
            line.edited += EditedCellText(place, rows.Text(place.row, place.column));
        std::puts(TextOf(line).c_str());
        std::fflush(stdout);
        QCoreApplication::processEvents();
    }

    CMainFrame& m_frame;
    CGridCtrl& m_grid;
    QString m_file;
    std::mt19937 m_random;
};

} // namespace

int main(int argc, char* argv[])
{
    SurviveFailedWrites();
    const CVantorApp app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 6)
        return 2;
    CMainFrame frame(std::filesystem::path(arguments.at(1).toStdString()) / "vantor");
    frame.resize(1000, 700);
    if (!ShowActive(frame))
        return 2;
    frame.KeepIn(arguments.at(3).toStdString());
    CUser user(frame, arguments.at(2), arguments.at(4).toUInt());
    user.Open();
    for (int left = arguments.at(5).toInt(); left > 0; --left)
        user.DoCommand();
    return CVantorApp::exec();
}
