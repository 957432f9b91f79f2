#include "views/ImportTableDlg.h"

#include "controls/FocusComboBox.h"
#include "document/EditMemory.h"
#include "document/RecipeDocument.h"
#include "files/TableTitles.h"
#include "text/EscapedText.h"
#include "text/Surrogates.h"
#include "ui_ImportTableDlg.h"
#include "views/NoticeLine.h"
#include "views/ProgressDialog.h"
#include "views/TextCrossing.h"

#include <QComboBox>
#include <QHeaderView>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTableWidget>

#include <algorithm>
#include <array>
#include <utility>

namespace {

enum Column { kColumn, kFirstValue, kItem, kNumbers };

constexpr int kWidth = 84;             // average characters, at first
constexpr int kRows = 8;               // in sight, at first
constexpr int kMostColumns = 1000;     // that are listed
constexpr std::size_t kMostShown = 40; // units of a field

constexpr std::array kSeparators{FieldSeparator::Tab, FieldSeparator::Semicolon, FieldSeparator::Comma,
                                 FieldSeparator::Bar, FieldSeparator::None};
constexpr std::array kSigns{NumberSign::Comma, NumberSign::Point, NumberSign::AsText}; // as the choices stand

template <class Values, class Value>
int IndexOf(const Values& values, Value value)
{
    const auto found = std::find(values.begin(), values.end(), value);
    return found == values.end() ? -1 : static_cast<int>(found - values.begin());
}

QString Shown(std::u16string_view text)
{
    const std::u16string_view part = CutText(text, kMostShown);
    return ToQString(EscapedText(part)) + (part.size() < text.size() ? QStringLiteral("…") : QString());
}

QTableWidgetItem* MakeItem(const QString& text)
{
    auto* item = new QTableWidgetItem(text);
    item->setFlags(Qt::ItemIsSelectable | Qt::ItemIsEnabled);
    return item;
}

QStringList SignNames()
{
    return {CImportTableDlg::tr("Decimal comma"), CImportTableDlg::tr("Decimal point"), CImportTableDlg::tr("As text")};
}

} // namespace

CImportTableDlg::CImportTableDlg(const QString& title, std::u16string text, const CRecipeRows& rows,
                                 ImportTarget target, CReporter& reporter, QWidget* parent)
    : QDialog(parent),
      m_pUi(std::make_unique<Ui::CImportTableDlg>()),
      m_text(std::move(text)),
      m_rows(rows),
      m_target(target),
      m_reporter(reporter)
{
    m_pUi->setupUi(this);
    setWindowTitle(title);
    SetUp();
    const auto separator = SeparatorOf(m_text);
    m_pUi->comboSeparator->setCurrentIndex(separator ? IndexOf(kSeparators, *separator) : -1);
    ConnectControls();
    CutAnew();
    FirstToDo()->setFocus();
}

/// What is to be decided first, else the button that goes on.
QWidget* CImportTableDlg::FirstToDo() const
{
    if (m_pUi->comboSeparator->currentIndex() < 0)
        return m_pUi->comboSeparator;
    for (int row = 0; row < m_pUi->tableColumns->rowCount(); ++row) {
        auto* choice = qobject_cast<QComboBox*>(m_pUi->tableColumns->cellWidget(row, kNumbers));
        if (choice != nullptr && choice->currentIndex() < 0)
            return choice;
    }
    return m_pUi->buttonOk;
}

CImportTableDlg::~CImportTableDlg() = default;

void CImportTableDlg::SetUp()
{
    m_pUi->spinFirstRow->setRange(1, std::max(m_rows.RowCount(), 1));
    m_pUi->spinFirstRow->setValue(m_target.firstRow + 1);
    for (const ColumnCoding& coding : m_rows.Columns())
        m_pUi->comboFirstItem->addItem(Shown(coding.title));
    m_pUi->comboFirstItem->setCurrentIndex(static_cast<int>(m_target.firstColumn));
    m_pUi->comboAllNumbers->addItems(SignNames());
    m_pUi->comboAllNumbers->setCurrentIndex(-1);
    QTableWidget& table = *m_pUi->tableColumns;
    table.verticalHeader()->hide();
    table.horizontalHeader()->setHighlightSections(false);
    table.horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    const int height = m_pUi->comboAllNumbers->sizeHint().height();
    table.horizontalHeader()->setSectionResizeMode(kNumbers, QHeaderView::Fixed);
    table.horizontalHeader()->resizeSection(kNumbers, m_pUi->comboAllNumbers->sizeHint().width() + height);
    table.verticalHeader()->setDefaultSectionSize(height);
    table.setMinimumHeight(3 * height);
    resize(kWidth * fontMetrics().averageCharWidth(), sizeHint().height() + (kRows - 3) * height);
}

void CImportTableDlg::ConnectControls()
{
    connect(m_pUi->comboSeparator, &QComboBox::currentIndexChanged, this, &CImportTableDlg::CutAnew);
    connect(m_pUi->checkTitles, &QCheckBox::toggled, this, &CImportTableDlg::LookAnew);
    connect(m_pUi->spinFirstRow, &QSpinBox::valueChanged, this, &CImportTableDlg::LookAnew);
    connect(m_pUi->comboFirstItem, &QComboBox::currentIndexChanged, this, &CImportTableDlg::LookAnew);
    connect(m_pUi->comboAllNumbers, &QComboBox::activated, this, &CImportTableDlg::ChooseAllSigns);
    connect(m_pUi->buttonOk, &QPushButton::clicked, this, [this] { End(CellsAnswer::Do); });
    connect(m_pUi->buttonPreview, &QPushButton::clicked, this, [this] { End(CellsAnswer::Preview); });
}

/// Whether there are titles is another question then.
void CImportTableDlg::CutAnew()
{
    m_cut.reset();
    const int separator = m_pUi->comboSeparator->currentIndex();
    const auto cut = [&] {
        m_cut = std::make_shared<const CDelimitedText>(m_text, kSeparators[static_cast<std::size_t>(separator)]);
    };
    if (separator >= 0 && WithMemoryFor(cut) == EditOutcome::OutOfMemory)
        m_reporter.ShowError(kNoMemoryForEdit);
    const QSignalBlocker blocked(m_pUi->checkTitles);
    m_pUi->checkTitles->setChecked(m_cut && CTableImport::LooksLikeTitles(*m_cut, m_rows));
    LookAnew();
}

void CImportTableDlg::LookAnew()
{
    m_import.reset();
    m_target = {m_pUi->spinFirstRow->value() - 1,
                static_cast<std::uint32_t>(std::max(m_pUi->comboFirstItem->currentIndex(), 0)),
                m_pUi->checkTitles->isChecked()};
    m_pUi->comboFirstItem->setEnabled(!m_target.hasTitles);
    m_pUi->labelFirstItem->setEnabled(!m_target.hasTitles);
    const auto look = [&] {
        CProgressDialog progress(*this, tr("Looking at the table"));
        m_import = CTableImport::Make(m_cut, m_rows, m_target, progress);
    };
    if (m_cut && WithMemoryFor(look) == EditOutcome::OutOfMemory)
        m_reporter.ShowError(kNoMemoryForEdit);
    ListColumns();
    ShowState();
}

void CImportTableDlg::ListColumns()
{
    QTableWidget& table = *m_pUi->tableColumns;
    table.setRowCount(0);
    m_pUi->comboAllNumbers->setCurrentIndex(-1); // each column says for itself how its numbers are written
    if (!m_import)
        return;
    table.setRowCount(static_cast<int>(std::min<std::size_t>(m_import->Columns().size(), kMostColumns)));
    for (int row = 0; row < table.rowCount(); ++row)
        ListColumn(row);
}

void CImportTableDlg::ListColumn(int row)
{
    QTableWidget& table = *m_pUi->tableColumns;
    const CTableImport::Column& column = m_import->Columns()[static_cast<std::size_t>(row)];
    const QString item = column.target ? Shown(m_rows.Columns()[*column.target].title) : tr("left out");
    table.setItem(row, kColumn, MakeItem(NameOf(static_cast<std::size_t>(row))));
    table.setItem(row, kFirstValue, MakeItem(Shown(column.sample)));
    table.setItem(row, kItem, MakeItem(item));
    table.setItem(row, kNumbers, MakeItem({}));
    if (!column.target)
        return;
    const DataType type = m_rows.Columns()[*column.target].dataType;
    if (IsDecimalInteger(type) || IsReal(type))
        AddSignChoice(row);
    else
        table.item(row, kNumbers)->setText(tr("As text"));
}

void CImportTableDlg::AddSignChoice(int row)
{
    auto* choice = new CFocusComboBox; // the wheel is for the table that it stands in
    choice->setObjectName(QStringLiteral("comboNumbers%1").arg(row + 1));
    choice->setAccessibleName(tr("Numbers of column %1").arg(NameOf(static_cast<std::size_t>(row))));
    choice->setPlaceholderText(tr("Choose…"));
    choice->addItems(SignNames());
    choice->setCurrentIndex(IndexOf(kSigns, m_import->Columns()[static_cast<std::size_t>(row)].sign));
    connect(choice, &QComboBox::currentIndexChanged, this, [this, row](int chosen) { ChooseSign(row, chosen); });
    m_pUi->tableColumns->setCellWidget(row, kNumbers, choice);
}

void CImportTableDlg::ChooseSign(int column, int choice)
{
    if (choice < 0 || !m_import)
        return;
    m_import->SetSign(static_cast<std::size_t>(column), kSigns[static_cast<std::size_t>(choice)]);
    if (choice != m_pUi->comboAllNumbers->currentIndex())
        m_pUi->comboAllNumbers->setCurrentIndex(-1);
    ShowState();
}

/// Also of the columns that are not listed.
void CImportTableDlg::ChooseAllSigns(int choice)
{
    if (!m_import || choice < 0)
        return;
    for (std::size_t i = 0; i < m_import->Columns().size(); ++i) {
        const auto target = m_import->Columns()[i].target;
        if (target && m_rows.Columns()[*target].dataType != DataType::String &&
            !IsHexadecimal(m_rows.Columns()[*target].dataType))
            m_import->SetSign(i, kSigns[static_cast<std::size_t>(choice)]);
    }
    for (int row = 0; row < m_pUi->tableColumns->rowCount(); ++row)
        if (auto* one = qobject_cast<QComboBox*>(m_pUi->tableColumns->cellWidget(row, kNumbers)))
            one->setCurrentIndex(choice);
    ShowState();
}

bool CImportTableDlg::MayGoOn() const
{
    return m_import && m_import->IsDecided() && m_import->RowCount() > 0;
}

void CImportTableDlg::ShowState()
{
    m_pUi->buttonOk->setEnabled(MayGoOn());
    m_pUi->buttonPreview->setEnabled(MayGoOn());
    m_pUi->labelSummary->setText(Summary());
    ShowNotice(*m_pUi->labelNotice, Undecided(), {m_pUi->comboSeparator, m_pUi->tableColumns});
}

QString CImportTableDlg::NameOf(std::size_t column) const
{
    const QString title = Shown(m_import->Columns()[column].title);
    const QString number = QString::number(column + 1);
    return title.isEmpty() ? number : QStringLiteral("%1: %2").arg(number, title);
}

/// Why one cannot go on; empty when one can.
QString CImportTableDlg::Undecided() const
{
    if (m_pUi->comboSeparator->currentIndex() < 0)
        return tr("A comma may separate two fields here, or stand in one number. Choose what separates the fields.");
    if (!m_import)
        return tr("The table was not looked at to its end.");
    if (m_import->RowCount() == 0)
        return tr("There is no line for the rows of the table.");
    const auto& columns = m_import->Columns();
    const auto found = std::find_if(columns.begin(), columns.end(), [](const CTableImport::Column& column) {
        return column.target && column.sign == NumberSign::Undecided;
    });
    if (found == columns.end())
        return {};
    return tr("Column %1: “%2” can be read in two ways. Choose how the numbers of the column are written.")
        .arg(NameOf(static_cast<std::size_t>(found - columns.begin())), Shown(found->doubtful));
}

QString CImportTableDlg::Summary() const
{
    if (!m_import)
        return {};
    const QString lines = m_import->RowCount() == 1 ? tr("1 line for row %1.").arg(m_target.firstRow + 1)
                                                    : tr("%1 lines for rows %2 to %3.")
                                                          .arg(m_import->RowCount())
                                                          .arg(m_target.firstRow + 1)
                                                          .arg(m_target.firstRow + m_import->RowCount());
    const QString leftOut = LeftOut();
    return leftOut.isEmpty() ? lines : lines + QLatin1Char(' ') + leftOut;
}

QString CImportTableDlg::LeftOut() const
{
    QStringList sentences;
    if (const auto rows = m_import->RowsLeftOut(); rows > 0)
        sentences += rows == 1 ? tr("1 line does not fit and is left out.")
                               : tr("%1 lines do not fit and are left out.").arg(rows);
    if (const auto columns = m_import->ColumnsLeftOut(); columns > 0)
        sentences += columns == 1 ? tr("1 column is left out: no item is for it.")
                                  : tr("%1 columns are left out: no item is for them.").arg(columns);
    if (const auto fields = m_import->EmptyFields(); fields > 0)
        sentences += fields == 1 ? tr("1 empty field leaves its cell as it is.")
                                 : tr("%1 empty fields leave their cells as they are.").arg(fields);
    return sentences.join(QLatin1Char(' '));
}

/// A row that was typed is taken only when its field is left, which a button's key does not do.
void CImportTableDlg::End(CellsAnswer answer)
{
    m_pUi->spinFirstRow->interpretText();
    if (!MayGoOn())
        return;
    m_answer = answer;
    accept();
}
