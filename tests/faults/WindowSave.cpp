// vantor-window-save LIBRARY_FOLDER FILE TEXT [TARGET]: the window opens FILE, types TEXT into its first cell, saves as
// TARGET if there is one, which has to fail, and saves, twice when the first save fails. Prints a line a save: "saved"
// or "failed", and what the status bar says; then a line a message that came up. Ends with 0 when all is saved.

#include "app/MainFrame.h"
#include "app/VantorApp.h"
#include "controls/GridCtrl.h"
#include "disk/File.h"
#include "tests/support/DialogSteps.h"
#include "tests/support/ModalAnswer.h"

#include <QLabel>
#include <QLineEdit>
#include <QTest>

#include <cstdio>

namespace {

void Type(CMainFrame& frame, const QString& text)
{
    auto& grid = *frame.findChild<CGridCtrl*>();
    QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, grid.visualRect(grid.model()->index(0, 0)).center());
    QTest::keyClick(&grid, Qt::Key_F2);
    auto* editor = grid.findChild<QLineEdit*>();
    if (editor == nullptr)
        return;
    QTest::keyClick(editor, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(editor, text);
    QTest::keyClick(editor, Qt::Key_Return);
}

bool Save(CMainFrame& frame, const char* command = "actionSave")
{
    frame.findChild<QAction*>(QLatin1String(command))->trigger();
    const QString state = frame.Document().IsModified() ? QStringLiteral("failed") : QStringLiteral("saved");
    const QString status = frame.findChild<QLabel*>(QStringLiteral("labelMessage"))->text();
    std::printf("%s: %s\n", qPrintable(state), qPrintable(status));
    return !frame.Document().IsModified();
}

/// Saves as `target`, over what is there, when it is asked for a file.
CModalAnswer::Action Choosing(const QString& target)
{
    return [target](QWidget& dialog) {
        const auto* box = qobject_cast<QMessageBox*>(&dialog);
        if (box == nullptr)
            ChoosePath(target)(dialog);
        else
            CModalAnswer::Press(box->button(QMessageBox::Yes) ? QMessageBox::Yes : QMessageBox::Ok)(dialog);
    };
}

} // namespace

int main(int argc, char* argv[])
{
    SurviveFailedWrites();
    const CVantorApp app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 4 && arguments.size() != 5)
        return 2;
    const QString target = arguments.value(4);
    const CModalAnswer answer({Choosing(target)});
    CMainFrame frame(std::filesystem::path(arguments.at(1).toStdString()) / "vantor");
    frame.resize(1000, 700);
    frame.show();
    frame.OpenPath(arguments.at(2));
    Type(frame, arguments.at(3));
    if (!frame.Document().IsModified())
        return 2; // nothing was typed
    if (!target.isEmpty() && Save(frame, "actionSaveAs"))
        return 2;
    const bool isSaved = Save(frame) || Save(frame);
    for (const QString& text : answer.texts)
        std::printf("%s\n", qPrintable(text));
    return isSaved ? 0 : 1;
}
