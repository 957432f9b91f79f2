#pragma once

#include <QLineEdit>

/// A field to read and to copy from, not to type into; its background is that of the window.
class CReadOnlyField final : public QLineEdit {
    Q_OBJECT

public:
    explicit CReadOnlyField(QWidget* parent = nullptr);

    /// Shows `text`: its end where it is longer than the field, and the whole of it in the tip.
    void ShowText(const QString& text);
};
