#pragma once

#include <QFrame>
#include <QList>
#include <QPointer>
#include <QString>

#include <functional>
#include <map>

class QHBoxLayout;
class QLabel;
class QToolButton;

/// A button of a strip's message. It leaves the message as it is; what it does may withdraw or replace it.
struct StripButton {
    QString text;
    std::function<void()> run;
};

/// What a strip says: a sentence or two in plain text, and what can be done about it.
struct StripMessage {
    QString text;
    QList<StripButton> buttons;
};

/// A bar across a window that says one thing and offers buttons for it, without stopping anybody as a box would. It is
/// hidden while there is nothing to say.
///
/// Each message has a weight; there is at most one of each weight, and the heaviest is seen; a lighter one shows again
/// when those before it are gone. The user can dismiss the message seen, with its last button or with Escape. The text
/// wraps, can be chosen and copied, and is told to screen readers when it comes into sight.
class CStrip final : public QFrame {
    Q_OBJECT

public:
    explicit CStrip(QWidget* parent = nullptr);

    /// Adds `message`, or puts it in the place of the one of the same weight.
    void ShowMessage(int weight, const StripMessage& message);

    /// Takes back the message of this weight, if there is one. The focus goes back to where it came from when it was on
    /// a button that goes.
    void Withdraw(int weight);

    bool HasMessage(int weight) const { return m_messages.contains(weight); }

    /// Whether the message of this weight is the one that is seen.
    bool IsSeen(int weight) const { return !m_messages.empty() && m_messages.rbegin()->first == weight; }

signals:
    /// The user dismissed the message of this weight.
    void Dismissed(int weight);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void ShowHeaviest();
    void MakeButtons(const QList<StripButton>& buttons);
    void Dismiss();
    void RememberFocus(QWidget* before, const QWidget* now);
    void GiveFocusBack();

    std::map<int, StripMessage> m_messages; ///< by weight
    QLabel* m_pText;
    QHBoxLayout* m_pButtons;
    QToolButton* m_pDismiss;
    QPointer<QWidget> m_pFocusBefore; ///< what had the focus before one of the buttons had it
};
