#include "views/VersionsDlg.h"

#include "document/RecipeDocument.h"
#include "files/RecipeFile.h"
#include "recovery/VersionSetting.h"
#include "text/EscapedText.h"
#include "ui_VersionsDlg.h"
#include "views/NoticeLine.h"
#include "views/TextCrossing.h"
#include "views/VersionTime.h"

#include <QKeyEvent>

#include <utility>

namespace {

enum Column { kTime, kCommand, kValues };
enum Entry { kRecipe, kFormats };

constexpr int kWidth = 84;          // average characters, at first
constexpr int kNameLetters = 40;    // of a file's name in a sentence
constexpr int kRows = 12;           // in sight, at first
constexpr int kLeastRows = 3;       // in sight, however low the dialog is
constexpr int kRoomInRow = 6;       // pixels by which a row is higher than its text
constexpr int kCommandLetters = 24; // of a column that takes what the others leave

QString Plain(const QString& text)
{
    return QStringLiteral("<p>%1</p>").arg(text.toHtmlEscaped());
}

QTableWidgetItem* MakeItem(const QString& text)
{
    auto* item = new QTableWidgetItem(text);
    item->setFlags(Qt::ItemIsSelectable | Qt::ItemIsEnabled);
    return item;
}

} // namespace

CVersionsDlg::CVersionsDlg(const CVersionStore& store, const CRecipeDocument& document, std::filesystem::path library,
                           QWidget* parent)
    : QDialog(parent),
      m_store(store),
      m_document(document),
      m_library(std::move(library)),
      m_pUi(std::make_unique<Ui::CVersionsDlg>()),
      m_counting(this)
{
    m_pUi->setupUi(this);
    m_counting.setObjectName(QStringLiteral("timerVersions"));
    SetUpTable();
    FillFiles();
    ShowWhetherKept();
    ConnectControls();
    ListVersions();
    m_pUi->tableVersions->setFocus();
}

CVersionsDlg::~CVersionsDlg() = default;

void CVersionsDlg::SetUpTable()
{
    QTableWidget& table = *m_pUi->tableVersions;
    const QFontMetrics metrics = table.fontMetrics();
    const int height = metrics.height() + kRoomInRow;
    table.verticalHeader()->hide();
    table.verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    table.verticalHeader()->setMinimumSectionSize(height);
    table.verticalHeader()->setDefaultSectionSize(height);
    QHeaderView& titles = *table.horizontalHeader();
    titles.setHighlightSections(false);
    titles.setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    titles.setSectionResizeMode(kTime, QHeaderView::ResizeToContents);
    titles.setSectionResizeMode(kCommand, QHeaderView::Stretch);
    titles.setSectionResizeMode(kValues, QHeaderView::ResizeToContents);
    titles.setMinimumSectionSize(kCommandLetters * metrics.averageCharWidth() / 2);
    table.setMinimumHeight((kLeastRows + 1) * height);
    resize(kWidth * fontMetrics().averageCharWidth(), sizeHint().height() + (kRows - kLeastRows) * height);
}

void CVersionsDlg::FillFiles()
{
    QComboBox& files = *m_pUi->comboFile;
    files.addItem(FileName());
    files.addItem(tr("Data formats"));
    files.setItemData(kRecipe, Plain(ToQPath(m_document.Path())), Qt::ToolTipRole);
    files.setItemData(kFormats, Plain(ToQPath(m_library)), Qt::ToolTipRole);
}

void CVersionsDlg::ConnectControls()
{
    connect(m_pUi->comboFile, &QComboBox::currentIndexChanged, this, &CVersionsDlg::ListVersions);
    connect(m_pUi->tableVersions, &QTableWidget::itemSelectionChanged, this, &CVersionsDlg::EnableButtons);
    connect(m_pUi->tableVersions, &QTableWidget::cellDoubleClicked, m_pUi->buttonShow, &QPushButton::click);
    connect(m_pUi->buttonShow, &QPushButton::clicked, this, [this] { AcceptDifferences(Wish::ShowDifferences); });
    connect(m_pUi->buttonCompare, &QPushButton::clicked, this, [this] { AcceptDifferences(Wish::Compare); });
    connect(m_pUi->buttonRestore, &QPushButton::clicked, this, &CVersionsDlg::OnRestore);
    connect(m_pUi->buttonForget, &QPushButton::clicked, this, &CVersionsDlg::AskToForget);
    connect(m_pUi->buttonForgetThem, &QPushButton::clicked, this, &CVersionsDlg::OnForget);
    connect(m_pUi->buttonKeepThem, &QPushButton::clicked, this, &CVersionsDlg::WithdrawQuestion);
    connect(m_pUi->checkKeep, &QCheckBox::clicked, this, &CVersionsDlg::OnKeepChosen);
    connect(&m_counting, &QTimer::timeout, this, &CVersionsDlg::CountNext);
}

void CVersionsDlg::ShowWhetherKept()
{
    QCheckBox& keep = *m_pUi->checkKeep;
    keep.setChecked(AreVersionsKept(m_store.DataFolder()));
    if (!AreVersionsSwitchedOff())
        return;
    keep.setEnabled(false);
    keep.setText(tr("&Keep earlier versions of files (switched off by VANTOR_VERSIONS)"));
}

void CVersionsDlg::OnKeepChosen(bool areKept)
{
    const bool isStored = SetVersionsKept(m_store.DataFolder(), areKept);
    ShowNotice(*m_pUi->labelNotice, isStored ? QString() : tr("This setting could not be stored."), {m_pUi->checkKeep});
    if (!isStored)
        m_pUi->checkKeep->setChecked(!areKept);
    ShowEmpty();
}

bool CVersionsDlg::IsOfLibrary() const
{
    return m_pUi->comboFile->currentIndex() == kFormats;
}

std::filesystem::path CVersionsDlg::File() const
{
    return IsOfLibrary() ? m_library : m_document.Path();
}

/// As a sentence names it: a long one is cut in its middle, and makes no wide dialog.
QString CVersionsDlg::FileName() const
{
    if (IsOfLibrary())
        return tr("the data formats");
    const QString name = ToQPath(m_document.Path().filename());
    return fontMetrics().elidedText(name, Qt::ElideMiddle, kNameLetters * fontMetrics().averageCharWidth());
}

void CVersionsDlg::ListVersions()
{
    WithdrawQuestion();
    ShowNotice(*m_pUi->labelNotice, {}, {m_pUi->checkKeep});
    m_versions = m_store.List(File());
    m_counts.assign(IsOfLibrary() ? 0 : m_versions.size(), {});
    m_nCounted = 0;
    m_pUi->comboFile->setToolTip(Plain(ToQPath(File())));
    QTableWidget& table = *m_pUi->tableVersions;
    table.setColumnHidden(kValues, IsOfLibrary());
    table.setRowCount(static_cast<int>(m_versions.size()));
    for (int row = 0; row < table.rowCount(); ++row)
        AddRow(row);
    if (!m_versions.empty())
        table.setCurrentCell(0, kTime);
    ShowEmpty();
    EnableButtons();
    if (m_counts.empty())
        m_counting.stop();
    else
        m_counting.start(0);
}

void CVersionsDlg::AddRow(int row)
{
    const Version& version = m_versions[static_cast<std::size_t>(row)];
    QTableWidget& table = *m_pUi->tableVersions;
    auto* time = MakeItem(VersionTime(version.stamp));
    time->setToolTip(VersionTimeUtc(version.stamp));
    table.setItem(row, kTime, time);
    table.setItem(row, kCommand,
                  MakeItem(version.command.empty() ? tr("not known") : ToQString(EscapedText(version.command))));
    auto* values = MakeItem({});
    values->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
    table.setItem(row, kValues, values);
    ShowCount(row);
}

/// A plain sentence in the place of a table without rows.
void CVersionsDlg::ShowEmpty()
{
    const bool isEmpty = m_versions.empty();
    const QString text = m_pUi->checkKeep->isChecked()
                             ? tr("There are no earlier versions of %1 yet. One is kept before each change.")
                             : tr("There are no earlier versions of %1, and none are kept.");
    m_pUi->labelEmpty->setText(isEmpty ? text.arg(FileName()) : QString());
    m_pUi->labelEmpty->setVisible(isEmpty);
    m_pUi->tableVersions->setVisible(!isEmpty);
}

/// One version; the timer ends with the last.
void CVersionsDlg::CountNext()
{
    const std::size_t version = m_nCounted++;
    if (m_nCounted == m_counts.size())
        m_counting.stop();
    const auto differences = DifferencesOf(version);
    m_counts[version] = {true, differences ? std::optional(differences->places.size()) : std::nullopt};
    ShowCount(static_cast<int>(version));
    EnableButtons();
}

void CVersionsDlg::ShowCount(int row)
{
    const auto version = static_cast<std::size_t>(row);
    const Count count = version < m_counts.size() ? m_counts[version] : Count{.isCounted = true, .values = {}};
    QTableWidgetItem& item = *m_pUi->tableVersions->item(row, kValues);
    if (!count.isCounted)
        item.setText(QStringLiteral("…"));
    else
        item.setText(count.values ? QString::number(*count.values) : QStringLiteral("–"));
    const QString spoken = !count.isCounted ? tr("being counted") : tr("cannot be told");
    item.setData(Qt::AccessibleTextRole, count.values ? QVariant() : spoken);
    item.setToolTip(count.values ? QString() : spoken);
}

/// Nothing while the table shows no rows of the file.
std::optional<VersionDifferences> CVersionsDlg::DifferencesOf(std::size_t version)
{
    if (!m_document.HasRowsOfFile())
        return std::nullopt;
    if (!m_now)
        m_now = ReadStoredCells(m_document.Rows(), m_document.Type(), m_document.Path());
    return DifferencesFrom(*m_now, m_store, m_document.Path(), m_versions[version]);
}

std::optional<std::size_t> CVersionsDlg::Current() const
{
    const auto row = static_cast<std::size_t>(m_pUi->tableVersions->currentRow());
    return row < m_versions.size() ? std::optional(row) : std::nullopt;
}

void CVersionsDlg::EnableButtons()
{
    const auto current = Current();
    const auto mayDiffer = [](const Count& count) { return !count.isCounted || count.values.value_or(0) > 0; };
    m_pUi->buttonShow->setEnabled(current && *current < m_counts.size() && mayDiffer(m_counts[*current]));
    const auto isKnown = [](const Count& count) { return !count.isCounted || count.values; };
    m_pUi->buttonCompare->setEnabled(current && *current < m_counts.size() && isKnown(m_counts[*current]));
    m_pUi->buttonRestore->setEnabled(current.has_value());
    m_pUi->buttonForget->setEnabled(!m_versions.empty() && m_pUi->labelQuestion->isHidden());
}

void CVersionsDlg::AcceptDifferences(Wish wish)
{
    const auto current = Current();
    if (!current)
        return;
    m_differences = DifferencesOf(*current);
    if (!m_differences) {
        ShowNotice(*m_pUi->labelNotice, tr("The values of this version cannot be told."), {m_pUi->tableVersions});
        return;
    }
    m_chosen = *current;
    m_wish = wish;
    accept();
}

void CVersionsDlg::OnRestore()
{
    const auto current = Current();
    if (!current)
        return;
    m_chosen = *current;
    m_wish = Wish::Restore;
    accept();
}

/// In the dialog itself, and where no second press of the same button can answer it.
void CVersionsDlg::AskToForget()
{
    const QString text =
        m_versions.size() == 1
            ? tr("Remove the only earlier version of %1 for good?").arg(FileName())
            : tr("Remove all %1 earlier versions of %2 for good?").arg(m_versions.size()).arg(FileName());
    m_pUi->buttonForgetThem->show();
    m_pUi->buttonKeepThem->show();
    ShowNotice(*m_pUi->labelQuestion, text, {m_pUi->buttonForgetThem, m_pUi->buttonKeepThem});
    m_pUi->buttonKeepThem->setFocus();
    EnableButtons();
}

void CVersionsDlg::WithdrawQuestion()
{
    if (m_pUi->labelQuestion->isHidden())
        return;
    const bool hadFocus = m_pUi->buttonKeepThem->hasFocus() || m_pUi->buttonForgetThem->hasFocus();
    ShowNotice(*m_pUi->labelQuestion, {}, {m_pUi->buttonForgetThem, m_pUi->buttonKeepThem});
    m_pUi->buttonForgetThem->hide();
    m_pUi->buttonKeepThem->hide();
    EnableButtons();
    if (hadFocus)
        m_pUi->tableVersions->setFocus();
}

void CVersionsDlg::OnForget()
{
    const bool areGone = m_store.Forget(File());
    ListVersions();
    if (!areGone)
        ShowNotice(*m_pUi->labelNotice, tr("Not all earlier versions of %1 could be removed.").arg(FileName()),
                   {m_pUi->checkKeep});
    if (m_versions.empty())
        m_pUi->buttonClose->setFocus();
}

/// Escape takes back the question first.
void CVersionsDlg::keyPressEvent(QKeyEvent* event)
{
    if (event->matches(QKeySequence::Cancel) && !m_pUi->labelQuestion->isHidden())
        WithdrawQuestion();
    else
        QDialog::keyPressEvent(event);
}
