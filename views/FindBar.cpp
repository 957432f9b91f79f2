#include "views/FindBar.h"

#include "controls/ElidedLabel.h"
#include "views/TextCrossing.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

CFindBar::CFindBar(QWidget* parent)
    : CPaneBar(tr("Find"), parent),
      m_pText(new QLineEdit(this)),
      m_pKind(new QComboBox(this)),
      m_pScope(new QComboBox(this)),
      m_pCase(new QCheckBox(tr("Match case"), this)),
      m_pWhole(new QCheckBox(tr("Whole cell"), this)),
      m_pReplacement(new QLineEdit(this)),
      m_pReplaceRow(MakeReplaceRow())
{
    setObjectName(QStringLiteral("barFind"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(Spacing(), Spacing(), Spacing(), Spacing());
    layout->setSpacing(Spacing());
    layout->addLayout(MakeFindRow());
    layout->addLayout(MakeOptionRow());
    layout->addWidget(m_pReplaceRow);
    m_pReplaceRow->hide();
    QWidget* last = m_pText;
    for (QWidget* next :
         {findChild<QWidget*>(QStringLiteral("buttonFindNext")),
          findChild<QWidget*>(QStringLiteral("buttonFindPrevious")),
          findChild<QWidget*>(QStringLiteral("buttonListAll")), static_cast<QWidget*>(m_pKind),
          static_cast<QWidget*>(m_pScope), static_cast<QWidget*>(m_pCase), static_cast<QWidget*>(m_pWhole),
          static_cast<QWidget*>(m_pReplacement), findChild<QWidget*>(QStringLiteral("buttonReplace")),
          findChild<QWidget*>(QStringLiteral("buttonReplaceAll")), static_cast<QWidget*>(&CloseButton())}) {
        setTabOrder(last, next);
        last = next;
    }
    connect(m_pText, &QLineEdit::textChanged, this, &CFindBar::QueryEdited);
    connect(m_pKind, &QComboBox::currentIndexChanged, this, [this] {
        AllowTextOptions();
        emit QueryEdited();
    });
    connect(m_pScope, &QComboBox::activated, this, &CFindBar::ScopeChosen);
    connect(m_pCase, &QCheckBox::toggled, this, &CFindBar::QueryEdited);
    connect(m_pWhole, &QCheckBox::toggled, this, &CFindBar::QueryEdited);
}

QLayout* CFindBar::MakeFindRow()
{
    m_pText->setObjectName(QStringLiteral("editFind"));
    m_pText->setAccessibleName(tr("Text or number to find"));
    m_pText->setClearButtonEnabled(true);
    m_pText->setAcceptDrops(false); // a file is for the window to open
    auto* label = new QLabel(tr("F&ind:"), this);
    label->setBuddy(m_pText);
    auto* row = new QHBoxLayout;
    row->addWidget(label);
    row->addWidget(m_pText, 1);
    row->addWidget(MakeButton(QStringLiteral("buttonFindNext"), tr("Next"), &CFindBar::NextAskedFor));
    row->addWidget(MakeButton(QStringLiteral("buttonFindPrevious"), tr("Previous"), &CFindBar::PreviousAskedFor));
    row->addWidget(MakeButton(QStringLiteral("buttonListAll"), tr("List all"), &CFindBar::ListAskedFor));
    row->addWidget(&CloseButton());
    return row;
}

QLayout* CFindBar::MakeOptionRow()
{
    m_pKind->setObjectName(QStringLiteral("comboFindKind"));
    m_pKind->setAccessibleName(tr("Find as text or as number"));
    m_pKind->setToolTip(tr("As a number, 7.5 finds 7.50, too: every cell that shows the same number"));
    m_pKind->addItems({tr("As text"), tr("As number")});
    m_pScope->setObjectName(QStringLiteral("comboFindScope"));
    m_pScope->setAccessibleName(tr("Where to find it"));
    m_pScope->addItems({tr("In the whole table"), tr("In the chosen column"), tr("In the selection")});
    m_pCase->setObjectName(QStringLiteral("checkMatchCase"));
    m_pWhole->setObjectName(QStringLiteral("checkWholeCell"));
    auto* row = new QHBoxLayout;
    row->addWidget(m_pKind);
    row->addWidget(m_pScope);
    row->addWidget(m_pCase);
    row->addWidget(m_pWhole);
    row->addSpacing(Spacing());
    row->addWidget(&Line(), 1);
    return row;
}

QWidget* CFindBar::MakeReplaceRow()
{
    auto* part = new QWidget(this);
    m_pReplacement->setObjectName(QStringLiteral("editReplacement"));
    m_pReplacement->setAccessibleName(tr("Text to replace it with"));
    m_pReplacement->setAcceptDrops(false);
    auto* label = new QLabel(tr("&Replace with:"), part);
    label->setBuddy(m_pReplacement);
    auto* row = new QHBoxLayout(part);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(label);
    row->addWidget(m_pReplacement, 1);
    row->addWidget(MakeButton(QStringLiteral("buttonReplace"), tr("Replace"), &CFindBar::ReplaceAskedFor));
    row->addWidget(MakeButton(QStringLiteral("buttonReplaceAll"), tr("Replace all"), &CFindBar::ReplaceAllAskedFor));
    return part;
}

QPushButton* CFindBar::MakeButton(const QString& name, const QString& text, void (CFindBar::*pressed)())
{
    auto* button = new QPushButton(text, this);
    button->setObjectName(name);
    connect(button, &QPushButton::clicked, this, pressed);
    return button;
}

/// They mean nothing for a number, which is the same or is not.
void CFindBar::AllowTextOptions()
{
    const bool isText = Query().kind == CellQuery::Kind::Text;
    m_pCase->setEnabled(isText);
    m_pWhole->setEnabled(isText);
}

void CFindBar::Open(Fields fields)
{
    m_pReplaceRow->setVisible(fields == Fields::FindAndReplace);
    show();
    m_pText->setFocus(Qt::ShortcutFocusReason);
    m_pText->selectAll();
}

CellQuery CFindBar::Query() const
{
    return {.text = std::u16string(ViewOf(m_pText->text())),
            .kind = m_pKind->currentIndex() == 0 ? CellQuery::Kind::Text : CellQuery::Kind::Number,
            .mindsCase = m_pCase->isChecked(),
            .isWholeCell = m_pWhole->isChecked()};
}

CFindBar::Scope CFindBar::ChosenScope() const
{
    return static_cast<Scope>(m_pScope->currentIndex());
}

QString CFindBar::Replacement() const
{
    return m_pReplacement->text();
}

void CFindBar::EnterPressed(Qt::KeyboardModifiers modifiers)
{
    if (modifiers.testFlag(Qt::ShiftModifier))
        emit PreviousAskedFor();
    else if (focusWidget() == m_pReplacement)
        emit ReplaceAskedFor();
    else
        emit NextAskedFor();
}
