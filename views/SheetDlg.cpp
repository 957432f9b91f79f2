#include "views/SheetDlg.h"

#include "print/QtSheetPdf.h"
#include "print/SheetPainter.h"
#include "sheet/SheetHtml.h"
#include "sheet/SheetMaking.h"
#include "text/EscapedText.h"
#include "ui_SheetDlg.h"
#include "views/NoticeLine.h"
#include "views/OneLineEdit.h"
#include "views/ProgressDialog.h"
#include "views/RowCountText.h"
#include "views/TextCrossing.h"
#include "views/VersionTime.h"

#include <QFileInfo>
#include <QGraphicsView>
#include <QPrintDialog>
#include <QPrintPreviewWidget>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <utility>

namespace {

constexpr std::chrono::milliseconds kPause{400};
constexpr int kWidth = 90;         // average characters, at first
constexpr int kHeight = 48;        // lines, at first
constexpr int kPreviewHeight = 10; // lines, at least
constexpr int kNothing = 0;        // the first entry of what changes are told since

/// The last message, for a line of the dialog.
class CLineReporter final : public CReporter {
public:
    void ShowError(std::u16string_view text) override { m_text = ToQString(text); }
    bool AskYesNo(std::u16string_view) override { return false; }

    const QString& Text() const { return m_text; }

private:
    QString m_text;
};

} // namespace

CSheetDlg::CSheetDlg(const CRecipeDocument& document, const CVersionStore* store, RowChoices rows, Paths paths,
                     QWidget* parent)
    : QDialog(parent),
      m_pUi(std::make_unique<Ui::CSheetDlg>()),
      m_document(document),
      m_rows(std::move(rows)),
      m_paths(std::move(paths)),
      m_made(document, store),
      m_versions(store != nullptr && !document.Path().empty() ? store->List(document.Path()) : std::vector<Version>()),
      m_printer(QPrinter::ScreenResolution),
      m_pPreview(new QPrintPreviewWidget(&m_printer, this))
{
    m_pUi->setupUi(this);
    SetUp();
    FillRows();
    FillSince();
    ConnectControls();
}

CSheetDlg::~CSheetDlg() = default;

void CSheetDlg::SetUp()
{
    KeepOnOneLine(*m_pUi->editTitle);
    m_pUi->editTitle->setText(ToQString(EscapedText(UsualSheetTitle(m_document.Path()))));
    m_pPreview->setObjectName(QStringLiteral("preview"));
    m_pPreview->setAccessibleName(tr("Preview"));
    m_pPreview->setMinimumHeight(kPreviewHeight * fontMetrics().lineSpacing());
    m_pPreview->fitToWidth();
    m_pUi->layoutPreview->addWidget(m_pPreview);
    if (auto* pages = m_pPreview->findChild<QGraphicsView*>()) { // what scrolls
        pages->setAccessibleName(tr("Preview"));
        setTabOrder(m_pUi->comboSince, pages);
        setTabOrder(pages, m_pUi->buttonPrint);
    }
    m_pUi->editTitle->setFocus();
    m_typing.setObjectName(QStringLiteral("timerSheet"));
    m_typing.setSingleShot(true);
    m_typing.setInterval(kPause);
    resize(kWidth * fontMetrics().averageCharWidth(), kHeight * fontMetrics().lineSpacing());
}

/// Those that are in sight are meant, where others are hidden.
void CSheetDlg::FillRows()
{
    QComboBox& combo = *m_pUi->comboRows;
    combo.addItem(tr("All %1").arg(RowCountText(static_cast<std::size_t>(m_document.Rows().RowCount()))));
    if (m_rows.shown)
        combo.addItem(tr("The %1 shown").arg(RowCountText(m_rows.shown->size())));
    if (m_rows.chosen)
        combo.addItem(tr("The %1 with chosen cells").arg(RowCountText(m_rows.chosen->size())));
    combo.setCurrentIndex(m_rows.shown ? 1 : 0);
}

void CSheetDlg::FillSince()
{
    QComboBox& combo = *m_pUi->comboSince;
    combo.addItem(tr("Nothing"));
    for (const Version& version : m_versions) {
        const QString command = ToQString(EscapedText(version.command));
        combo.addItem(command.isEmpty() ? VersionTime(version.stamp)
                                        : tr("%1, before %2").arg(VersionTime(version.stamp), command));
    }
    combo.addItem(tr("A file…"));
}

void CSheetDlg::ConnectControls()
{
    connect(&m_typing, &QTimer::timeout, this, &CSheetDlg::MakeAnew);
    connect(m_pUi->editTitle, &QLineEdit::textEdited, &m_typing, qOverload<>(&QTimer::start));
    connect(m_pUi->comboRows, &QComboBox::activated, this, &CSheetDlg::MakeAnew);
    connect(m_pUi->comboPaper, &QComboBox::activated, this, &CSheetDlg::LayOut);
    connect(m_pUi->comboSince, &QComboBox::activated, this, &CSheetDlg::OnSinceChosen);
    connect(m_pPreview, &QPrintPreviewWidget::paintRequested, this,
            [this](QPrinter* printer) { PaintPreview(*printer); });
    connect(m_pUi->buttonPrint, &QPushButton::clicked, this, &CSheetDlg::OnPrint);
    connect(m_pUi->buttonPdf, &QPushButton::clicked, this, [this] { OnSave(QStringLiteral("pdf")); });
    connect(m_pUi->buttonHtml, &QPushButton::clicked, this, [this] { OnSave(QStringLiteral("html")); });
}

bool CSheetDlg::ReadFile()
{
    {
        CProgressDialog progress(*(parentWidget() != nullptr ? parentWidget() : this), tr("Reading the file"));
        if (m_made.ReadFile(progress) == Outcome::GivenUp)
            return false;
    }
    MakeAnew();
    return true;
}

/// The last entry asks for a file, which then has an entry of its own.
void CSheetDlg::OnSinceChosen()
{
    QComboBox& combo = *m_pUi->comboSince;
    const int fileEntry = static_cast<int>(m_versions.size()) + 1;
    if (combo.currentIndex() == combo.count() - 1) {
        const QString path = m_paths.askOther(*this);
        if (path.isEmpty())
            return combo.setCurrentIndex(m_nSince);
        m_strOther = path;
        const QString name = tr("File %1").arg(ToQString(EscapedText(ViewOf(QFileInfo(path).fileName()))));
        if (combo.count() == fileEntry + 1)
            combo.insertItem(fileEntry, name);
        else
            combo.setItemText(fileEntry, name);
        combo.setCurrentIndex(fileEntry);
    }
    m_nSince = combo.currentIndex();
    MakeAnew();
}

SheetOrder CSheetDlg::Order() const
{
    SheetOrder order;
    order.title = m_pUi->editTitle->text().toStdU16String();
    const int rows = m_pUi->comboRows->currentIndex();
    if (rows > 0)
        order.rows = rows == 1 && m_rows.shown ? m_rows.shown : m_rows.chosen;
    const auto version = static_cast<std::size_t>(m_nSince) - 1;
    if (m_nSince > kNothing && version < m_versions.size())
        order.since = m_versions[version];
    else if (m_nSince > kNothing)
        order.since = NativePath(m_strOther);
    return order;
}

/// What a version is called.
QString CSheetDlg::SinceName() const
{
    const auto version = static_cast<std::size_t>(m_nSince) - 1;
    return m_nSince > kNothing && version < m_versions.size()
               ? tr("the version of %1").arg(VersionTime(m_versions[version].stamp))
               : QString();
}

SheetPaper CSheetDlg::Paper() const
{
    return m_pUi->comboPaper->currentIndex() == 0 ? SheetPaper::A4 : SheetPaper::Letter;
}

void CSheetDlg::MakeAnew()
{
    m_typing.stop();
    m_pPainter.reset();
    CLineReporter reporter;
    Outcome outcome = Outcome::Failed;
    {
        CProgressDialog progress(*this, tr("Making the sheet"));
        outcome = m_made.Make(Order(), SinceName().toStdU16String(), reporter, progress);
    }
    if (outcome == Outcome::Done)
        return LayOut();
    ShowState(outcome == Outcome::GivenUp ? tr("The sheet was not made.") : reporter.Text());
    m_pPreview->updatePreview();
}

void CSheetDlg::LayOut()
{
    if (m_typing.isActive())
        return MakeAnew();
    const QPageLayout layout = PageLayoutOf(Paper());
    m_printer.setPageLayout(layout);
    m_pPainter = std::make_unique<CSheetPainter>(m_made.Sheet());
    Outcome outcome = Outcome::Failed;
    {
        CProgressDialog progress(*this, tr("Making the sheet"));
        outcome = m_pPainter->LayOut(m_printer.pageLayout().paintRect(QPageLayout::Point).size(), progress);
    }
    if (outcome != Outcome::Done)
        m_pPainter.reset();
    ShowState(outcome == Outcome::Done ? QString() : tr("The sheet was not made."));
    m_pPreview->updatePreview();
}

void CSheetDlg::PaintPreview(QPrinter& printer)
{
    CNoProgress progress;
    if (m_pPainter != nullptr)
        m_pPainter->Paint(printer, 0, std::min(m_pPainter->PageCount(), kMostPreviewed) - 1, progress);
}

QString CSheetDlg::PagesText() const
{
    if (m_pPainter == nullptr)
        return {};
    const int pages = m_pPainter->PageCount();
    const QString text = pages == 1 ? tr("1 page.") : tr("%1 pages.").arg(pages);
    return pages > kMostPreviewed ? tr("%1 The preview shows the first %2.").arg(text).arg(kMostPreviewed) : text;
}

/// `done` is what the user has just had done.
void CSheetDlg::ShowState(const QString& fault, const QString& done)
{
    m_pUi->labelPages->setText(done.isEmpty() ? PagesText() : PagesText() + QLatin1Char(' ') + done);
    for (QPushButton* button : {m_pUi->buttonPrint, m_pUi->buttonPdf, m_pUi->buttonHtml})
        button->setEnabled(m_pPainter != nullptr);
    ShowNotice(*m_pUi->labelNotice, fault, {m_pUi->comboRows, m_pUi->comboSince});
}

/// What was typed last may still wait.
void CSheetDlg::BringUpToDate()
{
    if (m_typing.isActive())
        MakeAnew();
}

void CSheetDlg::OnSave(const QString& ending)
{
    BringUpToDate();
    if (m_pPainter == nullptr)
        return;
    const QString path = m_paths.askSheet(*this, ending);
    if (!path.isEmpty())
        Save(path);
}

void CSheetDlg::Save(const QString& path)
{
    CLineReporter reporter;
    const std::filesystem::path target = NativePath(path);
    std::string bytes;
    const bool isSaved = MayWriteSheet(target, m_document.Path(), reporter) && MakeBytes(target, bytes, reporter) &&
                         WriteSheetFile(target, bytes, reporter);
    const QString name = ToQString(EscapedText(ViewOf(QFileInfo(path).fileName())));
    ShowState(reporter.Text(), isSaved ? tr("Saved as %1.").arg(name) : QString());
}

/// False when that was given up, or failed, which was reported then.
bool CSheetDlg::MakeBytes(const std::filesystem::path& path, std::string& bytes, CReporter& reporter)
{
    if (SheetFileTypeOf(path) == SheetFileType::Html) {
        bytes = SheetHtml(m_made.Sheet());
        return true;
    }
    CProgressDialog progress(*this, tr("Writing the sheet"));
    const Outcome outcome =
        CQtSheetPdf().Make({.sheet = m_made.Sheet(), .paper = Paper(), .records = m_made.Records()}, bytes, progress);
    if (outcome == Outcome::Failed)
        reporter.ShowError(ViewOf(tr("The PDF could not be made.")));
    return outcome == Outcome::Done;
}

/// The user may choose another paper there: the pages are those of that one.
void CSheetDlg::OnPrint()
{
    BringUpToDate();
    if (m_pPainter == nullptr)
        return;
    QPrinter printer(QPrinter::HighResolution);
    printer.setPageLayout(PageLayoutOf(Paper()));
    printer.setDocName(ToQString(m_made.Sheet().title));
    QPrintDialog dialog(&printer, this);
    dialog.setMinMax(1, m_pPainter->PageCount());
    if (dialog.exec() != QDialog::Accepted)
        return;
    const Outcome outcome = PrintOn(printer);
    ShowState(outcome == Outcome::Failed ? tr("The sheet could not be printed.") : QString(),
              outcome == Outcome::Done ? tr("Printed.") : QString());
}

Outcome CSheetDlg::PrintOn(QPrinter& printer)
{
    CProgressDialog progress(*this, tr("Printing"));
    CSheetPainter painter(m_made.Sheet());
    if (painter.LayOut(printer.pageLayout().paintRect(QPageLayout::Point).size(), progress) != Outcome::Done)
        return Outcome::GivenUp;
    const int first = std::clamp(printer.fromPage(), 1, painter.PageCount());
    const int last =
        printer.toPage() > 0 ? std::clamp(printer.toPage(), first, painter.PageCount()) : painter.PageCount();
    return painter.Paint(printer, first - 1, last - 1, progress);
}
