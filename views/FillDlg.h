#pragma once

#include "document/CellsCommand.h"
#include "views/CellsDialog.h"

#include <QDialog>
#include <QString>

#include <memory>

namespace Ui {
class CFillDlg;
}

/// Asks what to fill cells with: one value, or a series of numbers. Ends only with numbers that can be read; else a
/// line says what is wrong.
class CFillDlg final : public QDialog {
    Q_OBJECT

public:
    /// `cells` says which cells are filled.
    explicit CFillDlg(const QString& cells, QWidget* parent = nullptr);
    ~CFillDlg() override;

    CellsAnswer Answer() const { return m_answer; }

    /// What `cells` are to get.
    std::shared_ptr<const CCellsCommand> CommandFor(CChosenCells cells) const;

private:
    void Choose();
    void End(CellsAnswer answer);
    bool IsSeries() const;

    std::unique_ptr<Ui::CFillDlg> m_pUi;
    CellsAnswer m_answer = CellsAnswer::Do;
    NumberSeries m_series;
};
