#include "app/FindValueCommands.h"

#include "model/DataItemCheck.h"
#include "ui_MainFrame.h"
#include "views/FindValueDlg.h"
#include "views/RecipeDataShowView.h"
#include "views/RecipeFormatEditView.h"
#include "views/RecipeFrame.h"

namespace {

constexpr std::int32_t kRealDigits = 6; // before the point, that an item for a float gets
constexpr std::int32_t kRealDecimals = 3;
constexpr std::int32_t kMostDigits = 10; // that any integer has

/// An item of the form, with as many digits as its type has room for.
DataItem ItemOf(const NumberForm& form)
{
    DataItem item;
    item.dataType = form.type;
    item.codeType = CodeType::Bin;
    item.dataLength = ProposedLength(form.type).value_or(1);
    const DigitCounts digits =
        IsReal(form.type) ? DigitCounts{kRealDigits, kRealDecimals}
                          : FitIntegerDigits(form.type, {.integerDigits = kMostDigits, .decimalDigits = form.decimals});
    item.integerDigits = digits.integerDigits;
    item.decimalDigits = digits.decimalDigits;
    return item;
}

} // namespace

CFindValueCommands::CFindValueCommands(const Parts& parts) : m_parts(parts)
{
    connect(m_parts.ui.actionFindValue, &QAction::triggered, this, &CFindValueCommands::Find);
}

void CFindValueCommands::Follow()
{
    const CRecipeDocument& document = m_parts.frame.Document();
    m_parts.ui.actionFindValue->setEnabled(document.IsOpen() && !document.Path().empty());
}

void CFindValueCommands::Find()
{
    CRecipeDocument& document = m_parts.frame.Document();
    if (!m_parts.dataPane.EndCellEdit() || document.Path().empty())
        return;
    CFindValueDlg dialog(document, m_strNumber, &m_parts.window);
    dialog.exec();
    m_strNumber = dialog.Number();
    switch (dialog.ChosenWish()) {
    case CFindValueDlg::Wish::GoTo:
        if (const auto cell = dialog.Cell())
            m_parts.dataPane.GoToCell(*cell);
        break;
    case CFindValueDlg::Wish::UseAsStart:
        m_parts.formatPane.UseStartAddress(static_cast<std::int32_t>(dialog.Address().number));
        m_parts.dataPane.setFocus(Qt::OtherFocusReason);
        break;
    case CFindValueDlg::Wish::AddAsItem:
        m_parts.formatPane.AddItem(ItemOf(dialog.Form()));
        break;
    case CFindValueDlg::Wish::Nothing:
        break;
    }
}
