#pragma once

#include "views/PaneBar.h"

class QComboBox;
class QPushButton;

/// Asks where to go: a row, an address or an item. It keeps the last ten texts that led somewhere.
class CGoToBar final : public CPaneBar {
    Q_OBJECT

public:
    explicit CGoToBar(QWidget* parent = nullptr);

    /// Comes into sight, ready for a text; what it holds is selected.
    void Open();

    QString Text() const;

    /// The text led somewhere: it is the first of those that are kept.
    void Remember();

    /// Says why it did not, and offers to go to the nearest value where there is one.
    void Refuse(const QString& why, bool hasNearest);

signals:
    void GoAskedFor();
    void NearestAskedFor();

protected:
    void EnterPressed(Qt::KeyboardModifiers modifiers) override;

private:
    QComboBox* m_pText;
    QPushButton* m_pNearest;
};
