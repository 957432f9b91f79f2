#include "app/GoToCommands.h"

#include "files/TableTitles.h"
#include "ui_MainFrame.h"
#include "views/GoToBar.h"
#include "views/RecipeDataShowView.h"
#include "views/RecipeFrame.h"
#include "views/TextCrossing.h"

CGoToCommands::CGoToCommands(Ui::CMainFrame& ui, CRecipeFrame& frame, CRecipeDataShowView& dataPane)
    : m_frame(frame),
      m_dataPane(dataPane),
      m_pBar(new CGoToBar)
{
    m_dataPane.AddBar(*m_pBar);
    connect(ui.actionGoTo, &QAction::triggered, this, &CGoToCommands::Open);
    connect(m_pBar, &CGoToBar::GoAskedFor, this, &CGoToCommands::Go);
    connect(m_pBar, &CGoToBar::NearestAskedFor, this, &CGoToCommands::GoToNearest);
    connect(m_pBar, &CGoToBar::Closed, this, [this] { m_dataPane.setFocus(Qt::OtherFocusReason); });
}

void CGoToCommands::Open()
{
    if (m_dataPane.EndCellEdit())
        m_pBar->Open();
}

GoToTarget CGoToCommands::Target() const
{
    const CRecipeDocument& document = m_frame.Document();
    const auto addresses = document.Type() == FileType::Csv ? RowAddresses::None : RowAddresses::OfWords;
    return FindTarget(ViewOf(m_pBar->Text()), document.Rows(), addresses, m_dataPane.FocusPlace());
}

void CGoToCommands::Go()
{
    const GoToTarget target = Target();
    if (target.kind == GoToTarget::Kind::Cell)
        GoTo(target.place);
    else
        m_pBar->Refuse(ToQString(target.message), target.kind == GoToTarget::Kind::Nearest);
}

/// The layout may be another one since it was offered.
void CGoToCommands::GoToNearest()
{
    const GoToTarget target = Target();
    if (target.kind == GoToTarget::Kind::Nowhere)
        return m_pBar->Refuse(ToQString(target.message), false);
    GoTo(target.place);
}

void CGoToCommands::GoTo(CellPlace place)
{
    m_pBar->Remember();
    m_pBar->hide();
    m_dataPane.GoToCell(place);
}
