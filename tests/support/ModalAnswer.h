#pragma once

#include <QMessageBox>
#include <QObject>
#include <QString>
#include <QTimer>

#include <chrono>
#include <functional>
#include <vector>

/// Answers the modal dialogs that come up while it lives.
///
/// Each time a dialog is the active modal one the next action is done on it, in the order given; the last action goes
/// on for all further ones. An action that leaves its dialog open is followed by the next action on whatever dialog is
/// then the active one, so a refused OK, its message and a second try are three actions.
class CModalAnswer : public QObject {
public:
    using Action = std::function<void(QWidget& dialog)>;

    /// Presses `button` in every dialog, `delay` after it came up.
    explicit CModalAnswer(QMessageBox::StandardButton button = QMessageBox::Ok, std::chrono::milliseconds delay = {});
    explicit CModalAnswer(std::vector<Action> actions, std::chrono::milliseconds delay = {});

    /// Presses a button of a message box or of a dialog's button box; fails the test when it is missing or disabled.
    static Action Press(QMessageBox::StandardButton button);
    /// Presses the button with that object name; fails the test when it is missing or disabled.
    static Action PressNamed(const QString& objectName);
    static Action Key(Qt::Key key);

    std::vector<QString> texts;  ///< of each dialog answered, in order: a message box's text, else the window title
    std::vector<QString> titles; ///< window titles, likewise

private:
    void Look();
    void Answer();

    std::vector<Action> m_actions;
    std::chrono::milliseconds m_delay;
    std::size_t m_next = 0;
    bool m_bAnswering = false;
    QTimer m_timer;
};
