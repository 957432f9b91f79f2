#pragma once

#include "document/TableImport.h"
#include "views/CellsDialog.h"

#include <QDialog>
#include <QString>

#include <memory>
#include <optional>
#include <string>

class CReporter;

namespace Ui {
class CImportTableDlg;
}

/// Asks how a text of another program is a table, and where it is to go: what separates its fields, whether its first
/// line has titles, and, where that cannot be told, how the numbers of a column are written. While something is
/// undecided there is no way to go on but to decide it. Nothing is remembered.
class CImportTableDlg final : public QDialog {
    Q_OBJECT

public:
    /// `text` goes into `rows`, which outlive the dialog, at `target` unless the user says otherwise.
    CImportTableDlg(const QString& title, std::u16string text, const CRecipeRows& rows, ImportTarget target,
                    CReporter& reporter, QWidget* parent = nullptr);
    ~CImportTableDlg() override;

    CellsAnswer Answer() const { return m_answer; }

    /// What the cells are to get.
    std::shared_ptr<const CCellsCommand> Command() const { return m_import->Command(); }

    /// Whole sentences on what is left out; empty where that is nothing.
    QString LeftOut() const;

private:
    void SetUp();
    QWidget* FirstToDo() const;
    void ConnectControls();
    void CutAnew();
    void LookAnew();
    void ListColumns();
    void ListColumn(int row);
    void AddSignChoice(int row);
    void ChooseSign(int column, int choice);
    void ChooseAllSigns(int choice);
    bool MayGoOn() const;
    void ShowState();
    QString Summary() const;
    QString Undecided() const;
    QString NameOf(std::size_t column) const;
    void End(CellsAnswer answer);

    std::unique_ptr<Ui::CImportTableDlg> m_pUi;
    std::u16string m_text;
    const CRecipeRows& m_rows;
    ImportTarget m_target;
    CReporter& m_reporter;
    std::shared_ptr<const CDelimitedText> m_cut; ///< null while the separator is undecided
    std::optional<CTableImport> m_import;        ///< nothing while that is so, or was given up
    CellsAnswer m_answer = CellsAnswer::Do;
};
