#include "views/SavePathDlg.h"

#include "controls/FileDialog.h"
#include "merge/SavePathRules.h"
#include "text/PathText.h"
#include "ui_SavePathDlg.h"

#include <QFileInfo>

#include <limits>

namespace {

constexpr char16_t kSeparator = std::filesystem::path::preferred_separator;
constexpr int kWidth = 80; // average characters: most paths fit

bool IsFolder(std::u16string_view path)
{
    return QFileInfo(QString::fromUtf16(path.data(), static_cast<qsizetype>(path.size()))).isDir();
}

QString AskFolder(QWidget& parent, const QString& folder)
{
    CFileDialog dialog(&parent, QStringLiteral("Save Path Select"), folder);
    dialog.setOption(QFileDialog::ShowDirsOnly);
    dialog.setFileMode(QFileDialog::Directory);
    return dialog.AskPath();
}

} // namespace

CSavePathDlg::CSavePathDlg(const std::filesystem::path& executable, CReporter& reporter, QWidget* parent)
    : QDialog(parent),
      m_pUi(std::make_unique<Ui::CSavePathDlg>()),
      m_reporter(reporter),
      m_strFolder(QString::fromStdU16String(ExecutableFolder(PathText(executable), kSeparator, IsFolder)))
{
    m_pUi->setupUi(this);
    resize(kWidth * fontMetrics().averageCharWidth(), sizeHint().height());
    m_pUi->editName->setMaxLength(std::numeric_limits<int>::max()); // a name has no limit here
    m_pUi->editPath->ShowText(m_strFolder);
    connect(m_pUi->editName, &QLineEdit::textChanged, this, &CSavePathDlg::OnNameChanged);
    connect(m_pUi->buttonFolder, &QPushButton::clicked, this, &CSavePathDlg::OnChooseFolder);
    connect(m_pUi->buttonOk, &QPushButton::clicked, this, &CSavePathDlg::OnOK);
}

CSavePathDlg::~CSavePathDlg() = default;

void CSavePathDlg::OnNameChanged(const QString& name)
{
    const std::u16string path = ShownPath(m_strFolder.toStdU16String(), name.toStdU16String(), kSeparator);
    m_pUi->editPath->ShowText(QString::fromStdU16String(path));
}

void CSavePathDlg::OnChooseFolder()
{
    const QString folder = AskFolder(*this, m_strFolder);
    if (folder.isEmpty())
        return;
    m_strFolder = QString::fromStdU16String(FolderChosen(folder.toStdU16String(), kSeparator));
    m_pUi->editPath->ShowText(m_strFolder + m_pUi->editName->text());
}

void CSavePathDlg::OnOK()
{
    if (const auto fault = MergeNameFault(m_pUi->editName->text().toStdU16String())) {
        m_reporter.ShowError(*fault);
        return;
    }
    const std::u16string path = WithRcpEnding(m_pUi->editPath->text().toStdU16String()); // kept: blanks as typed
    m_strPath = QString::fromStdU16String(path);
    if (!QFileInfo(m_strPath).isFile() || m_reporter.AskYesNo(OverwriteQuestion(path)))
        accept();
}
