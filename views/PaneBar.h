#pragma once

#include <QFrame>

class CElidedLabel;
class QToolButton;

/// A bar under the table: what it asks for, a line of text in which it answers, and a button that closes it, as Escape
/// does. It is hidden at first.
class CPaneBar : public QFrame {
    Q_OBJECT

public:
    explicit CPaneBar(const QString& name, QWidget* parent = nullptr);

    /// Says `text` in the bar's line, in place of what it said, and to screen readers.
    void Tell(const QString& text);

    QString Told() const;

    void Close();

signals:
    /// The user closed the bar.
    void Closed();

protected:
    CElidedLabel& Line() { return *m_pLine; }
    QToolButton& CloseButton() { return *m_pClose; }
    int Spacing() const;
    void keyPressEvent(QKeyEvent* event) override;

    /// Enter was pressed, and no button had the focus.
    virtual void EnterPressed(Qt::KeyboardModifiers modifiers) = 0;

private:
    CElidedLabel* m_pLine;
    QToolButton* m_pClose;
};
