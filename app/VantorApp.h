#pragma once

#include <QApplication>

#include <memory>

class CMainFrame;

/// The application: its name and settings key, its look, and its one frame.
class CVantorApp final : public QApplication {
    Q_OBJECT

public:
    CVantorApp(int& argc, char** argv);
    ~CVantorApp() override;

    /// What every program and test that shows the window sets up before the first widget.
    static void SetUp();

    /// Creates the frame, shows it maximized, and opens the file that the command line names, if it names one.
    void InitInstance();

private:
    std::unique_ptr<CMainFrame> m_pFrame;
};
