#include "app/ExportCommands.h"

#include "app/FileDialogs.h"
#include "app/RowsInPane.h"
#include "document/RecipeDocument.h"
#include "recovery/VersionStore.h"
#include "ui_MainFrame.h"
#include "views/ExportTableDlg.h"
#include "views/ProgressDialog.h"
#include "views/RecipeDataShowView.h"
#include "views/RecipeFrame.h"
#include "views/RowCountText.h"
#include "views/TextCrossing.h"

#include <cstddef>
#include <utility>
#include <vector>

CExportCommands::CExportCommands(const Parts& parts) : m_parts(parts)
{
    connect(m_parts.ui.actionExportTable, &QAction::triggered, this, &CExportCommands::ExportTable);
}

bool CExportCommands::HasRows() const
{
    return m_parts.frame.Document().Rows().RowCount() > 0;
}

void CExportCommands::Follow()
{
    m_parts.ui.actionExportTable->setEnabled(HasRows());
}

/// What is shown stands first in the choice.
void CExportCommands::ExportTable()
{
    if (!m_parts.dataPane.EndCellEdit() || !HasRows())
        return;
    const CRecipeRows& rows = m_parts.frame.Document().Rows();
    std::vector<ExportedRows> choices;
    if (const CShownRows& shown = m_parts.dataPane.ShownRows(); shown.AreSome())
        choices.push_back({tr("The %1 shown").arg(RowCountText(static_cast<std::size_t>(shown.Count()))),
                           RowsInSight(m_parts.dataPane)});
    choices.push_back({tr("All %1").arg(RowCountText(static_cast<std::size_t>(rows.RowCount()))), {}});
    if (auto chosen = RowsWithChosenCells(m_parts.dataPane); !chosen.empty())
        choices.push_back({tr("The %1 with chosen cells").arg(RowCountText(chosen.size())), std::move(chosen)});
    const auto edition = m_parts.frame.Document().CellsEdition();
    CExportTableDlg dialog(rows, std::move(choices), &m_parts.window);
    if (dialog.exec() != QDialog::Accepted)
        return;
    const QString path = AskExportPath(m_parts.window, ToQPath(m_parts.frame.Document().Path()));
    if (!path.isEmpty() && m_parts.frame.Document().CellsEdition() == edition)
        Write(dialog.Export(), path);
}

void CExportCommands::Write(const CTableExport& table, const QString& path)
{
    CRecipeDocument& document = m_parts.frame.Document();
    SaveResult result;
    {
        CProgressDialog progress(m_parts.window, tr("Writing the table"));
        result = document.WriteTable(table, NativePath(path), m_parts.frame.Reporter(), progress);
    }
    if (!result)
        return;
    QString text = (table.RowCount() == 1 ? tr("%1 was written: %2") : tr("%1 were written: %2"))
                       .arg(RowCountText(table.RowCount()), path);
    if (const auto& kept = document.LastSave().version)
        if (const auto notKept = NotKeptText(*kept, NativePath(path)); !notKept.empty())
            text += QLatin1Char(' ') + ToQString(notKept);
    m_parts.frame.TellEdit(text);
}
