#include "app/SheetCommands.h"

#include "app/FileDialogs.h"
#include "app/RowsInPane.h"
#include "ui_MainFrame.h"
#include "views/RecipeDataShowView.h"
#include "views/RecipeFrame.h"
#include "views/TextCrossing.h"

#include <QFileInfo>

#include <utility>

CSheetCommands::CSheetCommands(const Parts& parts) : m_parts(parts)
{
    m_parts.ui.actionRecipeSheet->setShortcut(Qt::CTRL | Qt::Key_P);
    connect(m_parts.ui.actionRecipeSheet, &QAction::triggered, this, &CSheetCommands::Open);
}

void CSheetCommands::Follow()
{
    m_parts.ui.actionRecipeSheet->setEnabled(!m_parts.frame.Document().Rows().Columns().empty());
}

QString CSheetCommands::Folder() const
{
    const std::filesystem::path& path = m_parts.frame.Document().Path();
    return path.empty() ? QString() : QFileInfo(ToQPath(path)).absolutePath();
}

CSheetDlg::RowChoices CSheetCommands::RowChoices() const
{
    CSheetDlg::RowChoices choices;
    if (m_parts.dataPane.ShownRows().AreSome())
        choices.shown = RowsInSight(m_parts.dataPane);
    if (auto chosen = RowsWithChosenCells(m_parts.dataPane); !chosen.empty())
        choices.chosen = std::move(chosen);
    return choices;
}

void CSheetCommands::Open()
{
    const CRecipeDocument& document = m_parts.frame.Document();
    if (!m_parts.dataPane.EndCellEdit() || document.Rows().Columns().empty())
        return;
    const QFileInfo own(ToQPath(document.Path()));
    const CSheetDlg::Paths paths{
        .askOther =
            [&](QWidget& dialog) {
                return AskComparePath(dialog, QStringLiteral("*.") + own.suffix().toLower(), Folder());
            },
        .askSheet =
            [&](QWidget& dialog, const QString& ending) {
                return AskSheetPath(dialog, ending, Folder(),
                                    document.Path().empty() ? QString() : own.completeBaseName());
            }};
    CSheetDlg dialog(document, &m_parts.versions, RowChoices(), paths, &m_parts.window);
    if (dialog.ReadFile())
        dialog.exec();
}
