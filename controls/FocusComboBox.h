#pragma once

#include <QComboBox>

/// A combo box whose choice the mouse wheel changes only while it has the focus. Otherwise the wheel scrolls what is
/// around it, and gives it no focus.
class CFocusComboBox final : public QComboBox {
    Q_OBJECT

public:
    explicit CFocusComboBox(QWidget* parent = nullptr);

protected:
    void wheelEvent(QWheelEvent* event) override;
};
