#pragma once

#include "files/CellQuery.h"
#include "views/PaneBar.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

/// Asks what to find in the table, and where; in a further row, with what to replace it. It knows nothing of the table:
/// who shows it does what its signals ask for, and answers in its line.
class CFindBar final : public CPaneBar {
    Q_OBJECT

public:
    enum class Scope { Table, Column, Selection };

    explicit CFindBar(QWidget* parent = nullptr);

    enum class Fields { Find, FindAndReplace };

    /// Comes into sight, ready for a text; what it holds is selected.
    void Open(Fields fields);

    CellQuery Query() const;
    Scope ChosenScope() const;
    QString Replacement() const;

signals:
    void QueryEdited();
    void ScopeChosen();
    void NextAskedFor();
    void PreviousAskedFor();
    void ListAskedFor();
    void ReplaceAskedFor();
    void ReplaceAllAskedFor();

protected:
    void EnterPressed(Qt::KeyboardModifiers modifiers) override;

private:
    QLayout* MakeFindRow();
    QLayout* MakeOptionRow();
    QWidget* MakeReplaceRow();
    QPushButton* MakeButton(const QString& name, const QString& text, void (CFindBar::*pressed)());
    void AllowTextOptions();

    QLineEdit* m_pText;
    QComboBox* m_pKind;
    QComboBox* m_pScope;
    QCheckBox* m_pCase;
    QCheckBox* m_pWhole;
    QLineEdit* m_pReplacement;
    QWidget* m_pReplaceRow;
};
