#include "views/FindValueDlg.h"

#include "text/Decimal.h"
#include "ui_FindValueDlg.h"
#include "views/FoundPlacesModel.h"
#include "views/TextCrossing.h"

#include <QAccessible>
#include <QHeaderView>

#include <chrono>
#include <utility>

namespace {

constexpr std::chrono::milliseconds kSlice{8};
constexpr int kWidth = 100;   // average characters, at first
constexpr int kRows = 12;     // in sight, at first
constexpr int kRoomInRow = 6; // pixels by which a row is higher than its text

} // namespace

CFindValueDlg::CFindValueDlg(const CRecipeDocument& document, const QString& number, QWidget* parent)
    : QDialog(parent),
      m_document(document),
      m_pUi(std::make_unique<Ui::CFindValueDlg>()),
      m_pModel(new CFoundPlacesModel(document.Rows(), m_forms, document.Type() == FileType::Csv, this))
{
    m_pUi->setupUi(this);
    m_looking.setObjectName(QStringLiteral("timerLooking"));
    m_looking.setSingleShot(true);
    SetUpTable();
    ConnectControls();
    m_pUi->editNumber->setText(number);
    m_pUi->editNumber->selectAll();
    m_pUi->labelNotice->setText(tr("Edits that are not saved yet are not in the file."));
    m_pUi->labelNotice->setVisible(m_document.Rows().EditedCount() > 0);
    EnableButtons();
}

CFindValueDlg::~CFindValueDlg() = default;

void CFindValueDlg::SetUpTable()
{
    QTableView& table = *m_pUi->tablePlaces;
    table.setModel(m_pModel);
    const int height = table.fontMetrics().height() + kRoomInRow;
    table.verticalHeader()->hide();
    table.verticalHeader()->setMinimumSectionSize(height);
    table.verticalHeader()->setDefaultSectionSize(height);
    table.horizontalHeader()->setHighlightSections(false);
    table.horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    table.horizontalHeader()->setStretchLastSection(true);
    const int letter = fontMetrics().averageCharWidth();
    const int widths[]{12, 20, 10, 18};
    for (int column = 0; column < static_cast<int>(std::size(widths)); ++column)
        table.setColumnWidth(column, widths[column] * letter);
    resize(kWidth * letter, sizeHint().height() + (kRows / 2) * height);
}

void CFindValueDlg::ConnectControls()
{
    connect(&m_looking, &QTimer::timeout, this, &CFindValueDlg::LookOn);
    connect(m_pUi->buttonFind, &QPushButton::clicked, this, &CFindValueDlg::OnFind);
    connect(m_pUi->buttonMore, &QPushButton::clicked, this, &CFindValueDlg::OnMore);
    connect(m_pUi->buttonStop, &QPushButton::clicked, this, &CFindValueDlg::OnStop);
    connect(m_pUi->tablePlaces->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &CFindValueDlg::EnableButtons);
    connect(m_pUi->tablePlaces, &QTableView::doubleClicked, m_pUi->buttonGoToCell, &QPushButton::click);
    connect(m_pUi->buttonGoToCell, &QPushButton::clicked, this, [this] { Accept(Wish::GoTo); });
    connect(m_pUi->buttonUseAsStart, &QPushButton::clicked, this, [this] { Accept(Wish::UseAsStart); });
    connect(m_pUi->buttonAddAsItem, &QPushButton::clicked, this, [this] { Accept(Wish::AddAsItem); });
}

QString CFindValueDlg::Number() const
{
    return m_pUi->editNumber->text();
}

void CFindValueDlg::OnFind()
{
    m_looking.stop();
    m_places.reset();
    m_fields.reset();
    m_pModel->Clear();
    m_isDone = false;
    m_strFault.clear();
    const QString text = Number().trimmed();
    const auto number = CDecimal::Parse(ViewOf(text));
    m_forms = IsTable() ? std::vector<NumberForm>() : FormsOfNumber(ViewOf(text));
    if (IsTable() ? !number : m_forms.empty() && !number) {
        m_isDone = true;
        m_strFault = text.contains(u',') ? tr("%1 is no number: decimals come after a point.").arg(text)
                                         : tr("%1 is no number.").arg(text.isEmpty() ? tr("This") : text);
        return ShowState();
    }
    if (IsTable())
        m_fields = std::make_unique<CNumberFields>(m_document.Path(), *number);
    else
        m_places = std::make_unique<CNumberPlaces>(m_document.Type(), m_document.Path(), m_forms);
    LookOn();
}

/// False after the last piece.
bool CFindValueDlg::LookAtPiece()
{
    if (m_fields)
        return m_fields->Continue([this](std::uint64_t line, std::size_t field, std::u16string_view text) {
            m_pModel->Add({line, static_cast<std::uint32_t>(field), std::u16string(text)});
        });
    return m_places->Continue([this](std::uint64_t word, const NumberForm& form) {
        m_pModel->Add({word, static_cast<std::uint32_t>(&form - m_places->Forms().data())});
    });
}

void CFindValueDlg::LookOn()
{
    const auto end = std::chrono::steady_clock::now() + kSlice;
    const std::size_t most =
        static_cast<std::size_t>(m_pModel->rowCount()) / kPlacesAtOnce * kPlacesAtOnce + kPlacesAtOnce;
    while (!m_isDone && m_pModel->Count() < most && std::chrono::steady_clock::now() < end)
        m_isDone = !LookAtPiece();
    m_pModel->ShowUpTo(most);
    if (m_pModel->rowCount() > 0 && !m_pUi->tablePlaces->selectionModel()->hasSelection())
        m_pUi->tablePlaces->selectRow(0);
    const bool hasFailed = m_isDone && (m_fields ? m_fields->HasFailed() : m_places->HasFailed());
    if (hasFailed)
        m_strFault = tr("The file could not be read.");
    if (!m_isDone && m_pModel->Count() < most)
        m_looking.start(0);
    ShowState();
}

void CFindValueDlg::OnStop()
{
    m_looking.stop();
    m_pUi->editNumber->setFocus();
    ShowState();
}

void CFindValueDlg::OnMore()
{
    m_pUi->tablePlaces->setFocus();
    LookOn();
}

void CFindValueDlg::ShowState()
{
    const bool isLooking = m_looking.isActive();
    const int shown = m_pModel->rowCount();
    const bool isMore =
        !isLooking && (m_fields || m_places) && (!m_isDone || m_pModel->Count() > static_cast<std::size_t>(shown));
    QString text = shown == 1 ? tr("1 place") : tr("%1 places").arg(shown);
    if (!m_strFault.isEmpty())
        text = m_strFault;
    else if (isLooking)
        text += tr(", looking…");
    else if (isMore)
        text += tr(", and the file is not looked through yet");
    else if (shown == 0)
        text = tr("Not found in the file");
    m_pUi->labelState->setText(text);
    m_pUi->buttonMore->setEnabled(isMore);
    m_pUi->buttonStop->setEnabled(isLooking);
    EnableButtons();
    if (isLooking)
        return;
    QAccessibleEvent alert(m_pUi->labelState, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void CFindValueDlg::EnableButtons()
{
    const int row = m_pUi->tablePlaces->currentIndex().row();
    const bool isChosen =
        row >= 0 && row < m_pModel->rowCount() && m_pUi->tablePlaces->selectionModel()->hasSelection();
    const bool isWord = isChosen && !IsTable();
    m_pUi->buttonGoToCell->setEnabled(isWord && Cell().has_value());
    m_pUi->buttonUseAsStart->setEnabled(isWord && Address().number <= INT32_MAX);
    m_pUi->buttonAddAsItem->setEnabled(isWord && !Form().isHighWordFirst);
    if (m_document.Rows().EditedCount() > 0)
        return;
    m_pUi->labelNotice->setVisible(isWord && Form().isHighWordFirst);
    m_pUi->labelNotice->setText(tr("An item always has its low word first: it would show another number here."));
}

void CFindValueDlg::Accept(Wish wish)
{
    m_looking.stop();
    m_wish = wish;
    accept();
}

WordAddress CFindValueDlg::Address() const
{
    return WordAddress(static_cast<std::int64_t>(m_pModel->At(m_pUi->tablePlaces->currentIndex().row()).word));
}

const NumberForm& CFindValueDlg::Form() const
{
    return m_forms[m_pModel->At(m_pUi->tablePlaces->currentIndex().row()).form];
}

std::optional<CellPlace> CFindValueDlg::Cell() const
{
    return m_pModel->CellOf(m_pModel->At(m_pUi->tablePlaces->currentIndex().row()));
}
