#include "app/ImportCommands.h"

#include "app/FileDialogs.h"
#include "app/OfferCommands.h"
#include "disk/Content.h"
#include "text/FileMessages.h"
#include "ui_MainFrame.h"
#include "views/ImportTableDlg.h"
#include "views/RecipeDataShowView.h"
#include "views/RecipeFrame.h"
#include "views/TextCrossing.h"

#include <QApplication>
#include <QClipboard>
#include <QFileInfo>
#include <QMimeData>

#include <algorithm>
#include <utility>

namespace {

bool HasClipboardText()
{
    const QMimeData* content = QApplication::clipboard()->mimeData();
    return content != nullptr && content->hasText();
}

} // namespace

CImportCommands::CImportCommands(const Parts& parts) : m_parts(parts)
{
    Ui::CMainFrame& ui = m_parts.ui;
    ui.actionPastePreview->setShortcut(Qt::CTRL | Qt::SHIFT | Qt::Key_V);
    ui.actionPastePreview->setShortcutContext(Qt::WidgetWithChildrenShortcut); // as that of the plain paste
    m_parts.dataPane.addAction(ui.actionPastePreview);
    connect(ui.actionPastePreview, &QAction::triggered, this, &CImportCommands::PasteWithPreview);
    connect(ui.actionImportTable, &QAction::triggered, this, &CImportCommands::ImportTable);
    connect(ui.menuEdit, &QMenu::aboutToShow, this, [this, &ui] {
        const bool areChosen = !m_parts.dataPane.ChosenRanges().empty();
        ui.actionPastePreview->setEnabled(HasRows() && areChosen && HasClipboardText());
    });
    connect(ui.menuEdit, &QMenu::aboutToHide, this, [&ui] { ui.actionPastePreview->setEnabled(true); });
}

bool CImportCommands::HasRows() const
{
    return m_parts.frame.Document().Rows().RowCount() > 0;
}

void CImportCommands::Follow()
{
    m_parts.ui.actionImportTable->setEnabled(HasRows());
}

/// The upper left corner of what the chosen cells reach over.
ImportTarget CImportCommands::FirstChosen() const
{
    ImportTarget target{INT32_MAX, UINT32_MAX, false};
    for (const CellRange& range : m_parts.dataPane.ChosenRanges()) {
        target.firstRow = std::min(target.firstRow, range.firstRow);
        target.firstColumn = std::min(target.firstColumn, range.firstColumn);
    }
    return target;
}

void CImportCommands::PasteWithPreview()
{
    if (!m_parts.dataPane.EndCellEdit())
        return;
    if (m_parts.dataPane.ChosenRanges().empty())
        return m_parts.frame.TellEdit(tr("No cell is chosen to paste into."));
    const QString text = HasClipboardText() ? QApplication::clipboard()->text() : QString();
    if (text.isEmpty())
        return m_parts.frame.TellEdit(tr("The clipboard holds no text."));
    Ask(EditKind::Paste, tr("Paste"), tr("Paste with preview"), text.toStdU16String(), FirstChosen());
}

/// From row 1 on, unless the user says otherwise: a file is mostly a whole table.
void CImportCommands::ImportTable()
{
    const CRecipeDocument& document = m_parts.frame.Document();
    if (!m_parts.dataPane.EndCellEdit() || !HasRows())
        return;
    const QString folder = document.Path().empty() ? QString() : QFileInfo(ToQPath(document.Path())).absolutePath();
    const QString path = AskTablePath(m_parts.window, folder);
    if (path.isEmpty())
        return;
    if (QFileInfo(path).isFile() && static_cast<std::uint64_t>(QFileInfo(path).size()) > kMostBytes)
        return m_parts.frame.Reporter().ShowError(ViewOf(tr("A table to be imported may have 64 MiB at most.")));
    const auto bytes = QFileInfo(path).isFile() ? ReadContent(NativePath(path), kMostBytes) : std::nullopt;
    if (!bytes)
        return ShowFileError(m_parts.frame.Reporter(), kOpenFileError, NativePath(path));
    Ask(EditKind::ImportTable, tr("Import"), tr("Import table"), TextOfBytes(*bytes), {});
}

void CImportCommands::Ask(EditKind kind, const QString& name, const QString& title, std::u16string text,
                          ImportTarget target)
{
    if (sizeof(char16_t) * text.size() > 2 * kMostBytes)
        return m_parts.frame.Reporter().ShowError(
            ViewOf(tr("A table to be pasted may have 64 Mi characters at most.")));
    const CRecipeDocument& document = m_parts.frame.Document();
    const auto edition = document.CellsEdition();
    CImportTableDlg dialog(title, std::move(text), document.Rows(), target, m_parts.frame.Reporter(), &m_parts.window);
    if (dialog.exec() != QDialog::Accepted || document.CellsEdition() != edition)
        return;
    const COfferCommands::Order order{
        .kind = kind, .name = name, .command = dialog.Command(), .remark = dialog.LeftOut(), .showsCells = true};
    dialog.Answer() == CellsAnswer::Do ? m_parts.offers.Do(order) : m_parts.offers.Preview(order);
}
