#pragma once

#include <QLabel>

/// A line of plain text that ends in "…" where there is no room for all of it; a tool tip then shows the whole, unless
/// the label has one of its own. It makes no window wide.
class CElidedLabel final : public QLabel {
    Q_OBJECT

public:
    explicit CElidedLabel(const QString& text, QWidget* parent = nullptr);

    /// Whether there is no room for all of the text.
    bool IsCut() const;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QRect TextRect() const;
};
