#pragma once

#include <QLabel>
#include <QRect>

/// A small window that shows the whole of a text that is cut off where it stands. It belongs to a grid, is made with it
/// and is hidden until Show.
class CTitleTip final : public QLabel {
    Q_OBJECT

public:
    explicit CTitleTip(QWidget* owner);

    /// Shows `text` over `place`, a rectangle of the screen, when it is too wide for it. False when it is not.
    bool Show(const QRect& place, const QString& text);
    /// Hides it and releases the mouse where it holds it.
    void Hide();

    int DoubleClickTime() const { return m_nDoubleClickTime; } ///< of the desktop, in milliseconds

protected:
    void mouseMoveEvent(QMouseEvent* event) override;

private:
    QRect m_rectPlace;
    int m_nDoubleClickTime;
};
