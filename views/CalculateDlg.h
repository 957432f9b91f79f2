#pragma once

#include "model/NumberChange.h"
#include "views/CellsDialog.h"

#include <QDialog>
#include <QString>

#include <memory>

namespace Ui {
class CCalculateDlg;
}

/// Asks by what the numbers of cells are to be changed. Ends only with a number that can be read and by which something
/// can be divided; else a line says what is wrong.
class CCalculateDlg final : public QDialog {
    Q_OBJECT

public:
    /// `cells` says which cells are changed.
    explicit CCalculateDlg(const QString& cells, QWidget* parent = nullptr);
    ~CCalculateDlg() override;

    CellsAnswer Answer() const { return m_answer; }
    const NumberChange& Change() const { return m_change; }

private:
    void End(CellsAnswer answer);

    std::unique_ptr<Ui::CCalculateDlg> m_pUi;
    CellsAnswer m_answer = CellsAnswer::Do;
    NumberChange m_change;
};
