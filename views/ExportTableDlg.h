#pragma once

#include "document/TableExport.h"

#include <QDialog>
#include <QString>

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace Ui {
class CExportTableDlg;
}

/// Some of a table's rows, as the user knows them.
struct ExportedRows {
    QString name;                                  ///< "The 5 rows shown"
    std::optional<std::vector<std::int32_t>> rows; ///< all where there is none
};

/// Asks how a table is to be written for other programs, and which rows of it; shows how the file will begin. Begins
/// with the signs of the user's language.
class CExportTableDlg final : public QDialog {
    Q_OBJECT

public:
    /// `rows` outlive the dialog. The first of `choices`, of which there is one, is chosen at first.
    CExportTableDlg(const CRecipeRows& rows, std::vector<ExportedRows> choices, QWidget* parent);
    ~CExportTableDlg() override;

    /// What the user chose.
    CTableExport Export() const;

private:
    TableExportForm Form() const;
    void ShowLines();

    const CRecipeRows& m_rows;
    std::vector<ExportedRows> m_choices;
    std::unique_ptr<Ui::CExportTableDlg> m_pUi;
};
