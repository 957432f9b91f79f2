#include "views/MergeParamDlg.h"

#include "controls/FileDialog.h"
#include "merge/MergeFiles.h"
#include "text/NumberText.h"
#include "ui_MergeParamDlg.h"
#include "views/SavePathDlg.h"

#include <QFileInfo>

#include <utility>

namespace {

constexpr int kWidth = 110;      // average characters: most paths fit
constexpr int kNumberWidth = 12; // average characters: all numbers that make sense fit, however small the dialog

/// Asks for a recipe file, first in the folder of `neighbour`; empty when the user cancelled. A name that does not
/// exist is returned too: measuring it tells.
QString AskRecipePath(QWidget& parent, const QString& neighbour)
{
    const QString folder = neighbour.isEmpty() ? QString() : QFileInfo(neighbour).path();
    CFileDialog dialog(&parent, QStringLiteral("Open file"), folder);
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setNameFilter(QStringLiteral("(*.rcp)"));
    dialog.setDefaultSuffix(QStringLiteral("rcp"));
    return dialog.AskPath();
}

/// For the core's file calls. By way of UTF-8, which gives even half a surrogate a form.
std::filesystem::path PathOf(const QString& text)
{
    const QByteArray utf8 = text.toUtf8();
    return std::u8string(utf8.begin(), utf8.end());
}

std::filesystem::path PathIn(const QLineEdit& field)
{
    return PathOf(field.text().trimmed());
}

std::int32_t NumberIn(const QLineEdit& field)
{
    return ReadInteger(field.text().toStdU16String());
}

} // namespace

/// What the dialog shows of one file.
struct CMergeParamDlg::SourceFields {
    CReadOnlyField& path;
    CReadOnlyField& bytes;
    QLineEdit& readStart;
    QLineEdit& length;
};

CMergeParamDlg::CMergeParamDlg(std::filesystem::path executable, CReporter& reporter, QWidget* parent)
    : QDialog(parent),
      m_pUi(std::make_unique<Ui::CMergeParamDlg>()),
      m_executable(std::move(executable)),
      m_reporter(reporter)
{
    m_pUi->setupUi(this);
    for (QLineEdit* number : {m_pUi->editFirstPlace, m_pUi->editFirstReadStart, m_pUi->editFirstLength,
                              m_pUi->editSecondPlace, m_pUi->editSecondReadStart, m_pUi->editSecondLength})
        number->setMinimumWidth(kNumberWidth * fontMetrics().averageCharWidth());
    resize(kWidth * fontMetrics().averageCharWidth(), sizeHint().height());
    connect(m_pUi->buttonFirstPath, &QPushButton::clicked, this, [this] { OnChooseFile(MergeSource::First); });
    connect(m_pUi->buttonSecondPath, &QPushButton::clicked, this, [this] { OnChooseFile(MergeSource::Second); });
    connect(m_pUi->buttonMergedPath, &QPushButton::clicked, this, &CMergeParamDlg::OnChooseMergedPath);
    connect(m_pUi->buttonMerge, &QPushButton::clicked, this, &CMergeParamDlg::OnOK);
}

CMergeParamDlg::~CMergeParamDlg() = default;

CMergeParamDlg::SourceFields CMergeParamDlg::FieldsOf(MergeSource source) const
{
    if (source == MergeSource::First)
        return {*m_pUi->editFirstPath, *m_pUi->editFirstFileBytes, *m_pUi->editFirstReadStart, *m_pUi->editFirstLength};
    return {*m_pUi->editSecondPath, *m_pUi->editSecondFileBytes, *m_pUi->editSecondReadStart, *m_pUi->editSecondLength};
}

void CMergeParamDlg::OnChooseFile(MergeSource source)
{
    const SourceFields fields = FieldsOf(source);
    const QString known = fields.path.text();
    const QString path = AskRecipePath(*this, known.isEmpty() ? m_pUi->editFirstPath->text() : known);
    if (path.isEmpty())
        return;
    const std::optional<std::int64_t> bytes = MeasureMergeFile(PathOf(path), source, m_reporter);
    if (!bytes)
        return;
    fields.path.ShowText(path);
    fields.bytes.ShowText(QString::number(*bytes));
    fields.readStart.setText(QStringLiteral("0"));
    fields.length.setText(QString::number(WholeWords(*bytes)));
}

void CMergeParamDlg::OnChooseMergedPath()
{
    CSavePathDlg dialog(m_executable, m_reporter, this);
    if (dialog.exec() == QDialog::Accepted)
        m_pUi->editMergedPath->ShowText(dialog.Path());
}

void CMergeParamDlg::OnOK()
{
    const MergeParams params = Params();
    if (const auto fault = ValidateMergeParams(params)) {
        m_reporter.ShowError(*fault);
        return;
    }
    if (m_pVersions != nullptr)
        m_versionTrouble = NotKeptText(m_pVersions->Keep(params.mergedPath, u"Merge"), params.mergedPath);
    if (MergeFiles(params, m_reporter))
        accept();
}

MergedSize CMergeParamDlg::ChosenSize() const
{
    if (m_pUi->radio256K->isChecked())
        return MergedSize::Words256K;
    return m_pUi->radio128K->isChecked() ? MergedSize::Words128K : MergedSize::None;
}

MergeParams CMergeParamDlg::Params() const
{
    return {.mergedSize = ChosenSize(),
            .firstPath = PathIn(*m_pUi->editFirstPath),
            .firstFileBytes = ReadInteger64(m_pUi->editFirstFileBytes->text().toStdU16String()),
            .firstReadStart = NumberIn(*m_pUi->editFirstReadStart),
            .firstLength = NumberIn(*m_pUi->editFirstLength),
            .firstPlace = NumberIn(*m_pUi->editFirstPlace),
            .secondPath = PathIn(*m_pUi->editSecondPath),
            .secondFileBytes = ReadInteger64(m_pUi->editSecondFileBytes->text().toStdU16String()),
            .secondReadStart = NumberIn(*m_pUi->editSecondReadStart),
            .secondLength = NumberIn(*m_pUi->editSecondLength),
            .secondPlace = NumberIn(*m_pUi->editSecondPlace),
            .mergedPath = PathIn(*m_pUi->editMergedPath)};
}
