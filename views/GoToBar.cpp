#include "views/GoToBar.h"

#include "controls/ElidedLabel.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>

namespace {

constexpr int kMostKept = 10;
constexpr int kLetters = 20; // wide

} // namespace

CGoToBar::CGoToBar(QWidget* parent)
    : CPaneBar(tr("Go to"), parent),
      m_pText(new QComboBox(this)),
      m_pNearest(new QPushButton(tr("Go to the nearest"), this))
{
    setObjectName(QStringLiteral("barGoTo"));
    m_pText->setObjectName(QStringLiteral("comboGoTo"));
    m_pText->setEditable(true);
    m_pText->setInsertPolicy(QComboBox::NoInsert);
    m_pText->setCompleter(nullptr); // 8 is a row, whatever was typed before
    m_pText->setMinimumContentsLength(kLetters);
    m_pText->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_pText->setAccessibleName(tr("Row, address or item"));
    m_pText->setToolTip(tr("A row (812), an address (RW4711), the name of an item, or a row and an item (812 Belt)"));
    m_pText->lineEdit()->setObjectName(QStringLiteral("editGoTo"));
    m_pText->lineEdit()->setAccessibleName(m_pText->accessibleName());
    m_pText->lineEdit()->setAcceptDrops(false); // a file is for the window to open
    m_pText->lineEdit()->setPlaceholderText(tr("812, RW4711 or an item"));
    m_pNearest->setObjectName(QStringLiteral("buttonGoToNearest"));
    m_pNearest->setAutoDefault(false);
    m_pNearest->hide();
    auto* label = new QLabel(tr("&Go to:"), this);
    label->setBuddy(m_pText);
    auto* go = new QPushButton(tr("Go"), this);
    go->setObjectName(QStringLiteral("buttonGoTo"));
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(Spacing(), Spacing(), Spacing(), Spacing());
    layout->addWidget(label);
    layout->addWidget(m_pText);
    layout->addWidget(go);
    layout->addWidget(&Line(), 1);
    layout->addWidget(m_pNearest);
    layout->addWidget(&CloseButton());
    setTabOrder(m_pText, go);
    setTabOrder(go, m_pNearest);
    setTabOrder(m_pNearest, &CloseButton());
    connect(go, &QPushButton::clicked, this, &CGoToBar::GoAskedFor);
    connect(m_pNearest, &QPushButton::clicked, this, &CGoToBar::NearestAskedFor);
    connect(m_pText, &QComboBox::editTextChanged, this, [this] { Refuse({}, false); });
}

void CGoToBar::Open()
{
    Refuse({}, false);
    show();
    m_pText->setFocus(Qt::ShortcutFocusReason);
    m_pText->lineEdit()->selectAll();
}

QString CGoToBar::Text() const
{
    return m_pText->currentText();
}

void CGoToBar::Remember()
{
    const QString text = Text().trimmed();
    if (const int known = m_pText->findText(text, Qt::MatchFixedString | Qt::MatchCaseSensitive); known >= 0)
        m_pText->removeItem(known);
    m_pText->insertItem(0, text);
    while (m_pText->count() > kMostKept)
        m_pText->removeItem(m_pText->count() - 1);
    m_pText->setCurrentIndex(0);
}

void CGoToBar::Refuse(const QString& why, bool hasNearest)
{
    const bool hadFocus = m_pNearest->hasFocus();
    m_pNearest->setVisible(hasNearest);
    if (hadFocus && !hasNearest)
        m_pText->setFocus(Qt::OtherFocusReason);
    Tell(why);
}

void CGoToBar::EnterPressed(Qt::KeyboardModifiers)
{
    emit GoAskedFor();
}
