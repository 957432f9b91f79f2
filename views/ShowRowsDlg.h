#pragma once

#include "document/RowChoice.h"

#include <QDialog>

#include <memory>

namespace Ui {
class CShowRowsDlg;
}

/// Asks which rows are to be shown: an item, a condition and, for some, a value. Ends with OK only when rows can be
/// chosen so; a line tells why they cannot.
class CShowRowsDlg final : public QDialog {
    Q_OBJECT

public:
    /// `rows` outlive the dialog, which begins with `condition`. `isCompared`: there is a file to differ from.
    CShowRowsDlg(const CRecipeRows& rows, const RowCondition& condition, bool isCompared, QWidget* parent = nullptr);
    ~CShowRowsDlg() override;

    RowCondition Condition() const;

private:
    void FillConditions(bool isCompared);
    void FollowCondition();
    void OnOK();

    const CRecipeRows& m_rows;
    std::unique_ptr<Ui::CShowRowsDlg> m_pUi;
};
