#include "controls/GridDelegate.h"

#include "controls/GridCellPaint.h"
#include "controls/GridModel.h"

#include <QAbstractItemView>
#include <QFontMetrics>
#include <QPainter>

namespace {

constexpr qsizetype kMeasuredText = 256; // a column fitted to its texts becomes no wider than such a text

bool IsFocusCell(const QStyleOptionViewItem& option, const QModelIndex& index)
{
    const auto* view = qobject_cast<const QAbstractItemView*>(option.widget);
    return view != nullptr && view->currentIndex() == index;
}

} // namespace

CGridDelegate::CGridDelegate(const CGridModel& model, QObject* parent) : QStyledItemDelegate(parent), m_model(model) {}

void CGridDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    const int row = m_model.GridRow(index);
    const int column = m_model.GridColumn(index);
    const bool selected = option.state.testFlag(QStyle::State_Selected);
    const bool focus = IsFocusCell(option, index);
    const auto group = option.state.testFlag(QStyle::State_Active) ? QPalette::Active : QPalette::Inactive;

    const GridCellMarks marks = m_model.Marks(row, column);
    const bool highlighted = selected && !focus;

    GridCellLook look = LookOf(m_model, row, column);
    if (highlighted) {
        look.textColor = option.palette.color(group, QPalette::HighlightedText);
        look.backColor = option.palette.color(group, QPalette::Highlight);
    } else {
        if (marks.outOfRange)
            look.backColor = WarningTint(look.backColor);
        if (marks.unusual)
            look.backColor = UnusualTint(look.backColor);
        if (marks.differs)
            look.backColor = DifferenceTint(look.backColor);
    }
    DrawCell(*painter, option.rect, m_model, row, column, look);
    DrawCellLines(*painter, option.rect, kGridLine);
    const GridMarkColors colors{option.palette.color(group, QPalette::Highlight), WarningColor(look.backColor),
                                UnusualColor(look.backColor), DifferenceColor(look.backColor)};
    DrawMarks(*painter, option.rect, marks,
              highlighted ? GridMarkColors{look.textColor, look.textColor, look.textColor, look.textColor} : colors);
    if (focus) // a thin frame when the cell is not selected
        DrawFrame(*painter, option.rect.adjusted(0, 0, -1, -1), selected ? kFocusFrame : 1,
                  option.palette.color(group, QPalette::Highlight));
}

QSize CGridDelegate::sizeHint(const QStyleOptionViewItem&, const QModelIndex& index) const
{
    const int row = m_model.GridRow(index);
    const int column = m_model.GridColumn(index);
    const GridCellLook look = LookOf(m_model, row, column);
    const QFontMetrics metrics(look.font);
    const QString text = m_model.Text(row, column).left(kMeasuredText);
    return {metrics.horizontalAdvance(text) + 2 * look.margin + 2, metrics.height() + 2};
}
