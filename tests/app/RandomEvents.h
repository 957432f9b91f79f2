#pragma once

#include "tests/support/TestFiles.h"

#include <QObject>
#include <QPointer>
#include <QString>

#include <atomic>
#include <deque>
#include <memory>
#include <random>
#include <string>

class CMainFrame;
class QEventLoop;
class QFileDialog;

/// A user who does anything at random: keys, clicks, drags, the wheel, menu commands, dropped files, other window
/// sizes, and any answer to a dialog. File dialogs are answered with names in a folder of its own only.
///
/// The window is closed and opened again over fresh files every few hundred events. The same seed gives the same events
/// as long as the window answers in the same way.
class CRandomEvents : public QObject {
public:
    explicit CRandomEvents(unsigned seed);
    ~CRandomEvents() override;

    /// Does `events` events, then closes the window and every dialog. Fails the test when a dialog cannot be closed.
    void Run(int events);

    /// The bytes of the heap in use when a window was closed and its caches emptied, the last time; 0 before that.
    std::size_t HeapBetweenWindows() const { return m_heap; }

    /// Moves on with every event, so that another thread can see a hang.
    int EventsDone() const { return m_done; }
    /// The last events, the newest last, and the seed. May be asked for from another thread when this one hangs.
    std::string Recent() const;

private:
    using Random = std::mt19937;

    void ScheduleStep();
    void Step();
    void Dismiss();
    void StartWindow();
    void CloseWindow();
    void WriteFiles();
    void Act();
    void AnswerFileDialog(QFileDialog& dialog);
    void PressKey(QWidget& window);
    void Click(QWidget& window);
    void Drag(QWidget& window);
    void Wheel(QWidget& window);
    void TriggerCommand();
    void DropFile();
    void Resize(QWidget& window);
    void PressButton(QWidget& window);
    QString PathToChoose();
    QWidget* ChildAt(QWidget& window, QPoint& at);

    int Below(int count) { return static_cast<int>(m_random() % static_cast<unsigned>(count)); }
    void Note(const std::string& event);

    unsigned m_seed;
    Random m_random;
    CTempFolder m_folder;
    std::unique_ptr<CMainFrame> m_pFrame;
    QEventLoop* m_pLoop = nullptr;
    int m_left = 0;
    int m_leftInWindow = 0;
    int m_depth = 0; ///< steps on the stack: a dialog runs inside the step that brought it up
    int m_dismissals = 0;
    std::atomic<int> m_done = 0;
    std::size_t m_heap = 0;
    std::deque<std::string> m_recent;
};
