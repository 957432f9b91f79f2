#pragma once

#include "app/MainFrame.h"
#include "tests/support/DialogSteps.h"
#include "tests/support/Formats.h"
#include "tests/support/GuiTest.h"
#include "tests/support/ModalAnswer.h"
#include "tests/support/TestFiles.h"

#include <QAction>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

class CGridCtrl;

/// The whole window over a folder of its own, with a library of one format: a signed 16-bit "Word" and a two-word ANSI
/// "Name", four rows from word 0.
struct FrameFixture : testing::Test {
    FrameFixture();
    ~FrameFixture() override;

    void Start();
    CGridCtrl& Grid();
    QAction& Action(const QString& name);
    template <class Widget>
    Widget& Find(const char* name)
    {
        auto* widget = frame->findChild<Widget*>(QLatin1String(name));
        if (widget == nullptr)
            throw std::runtime_error(std::string("no widget ") + name);
        return *widget;
    }

    /// The path of `name` in the folder, as the window shows it.
    QString Path(const std::string& name) const;
    std::string TitleWith(const std::string& name) const;
    std::string Title() const { return frame->windowTitle().toStdString(); }

    /// Writes a file of `words` zero words and returns its path.
    QString MakeFile(const std::string& name, std::size_t words = 12);

    /// Opens `name` in the folder through the Open command and its dialog.
    void OpenThroughDialog(const std::string& name);

    /// Types `text` into the cell with the focus and ends the edit with `key`.
    void TypeIntoCell(int row, int column, const QString& text, Qt::Key key = Qt::Key_Return);

    /// Clicks the cell of the grid.
    void ClickCell(int row, int column);

    CTempFolder folder;
    std::unique_ptr<CMainFrame> frame;
};
