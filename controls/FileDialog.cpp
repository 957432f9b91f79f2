#include "controls/FileDialog.h"

#include <QDir>
#include <QFileSystemModel>
#include <QHeaderView>
#include <QLineEdit>
#include <QScreen>
#include <QTreeView>

#include <algorithm>

namespace {

constexpr int kWidth = 120;     // average characters: most names, and all that is told of a file
constexpr int kLeastNames = 20; // average characters of the column of names, however narrow the dialog is
constexpr int kFrame = 16;      // pixels that a window's frame takes from the screen's width at most
constexpr int kNames = 0;       // the column of names

} // namespace

CFileDialog::CFileDialog(QWidget* parent, const QString& title, const QString& folder)
    : QFileDialog(parent, title, folder)
{
    setOption(DontUseNativeDialog); // its controls are there from now on
    const int most = screen()->availableSize().width() - kFrame;
    const int wanted = kWidth * fontMetrics().averageCharWidth();
    resize(std::min(std::max(sizeHint().width(), wanted), most), sizeHint().height());
    for (const auto* files : findChildren<QFileSystemModel*>()) {
        connect(files, &QFileSystemModel::directoryLoaded, this, &CFileDialog::FitColumns);
        connect(files, &QFileSystemModel::rowsInserted, this, &CFileDialog::FitColumns);
        connect(files, &QFileSystemModel::layoutChanged, this, &CFileDialog::FitColumns); // by another type of files
    }
}

QString CFileDialog::AskPath()
{
    return exec() == QDialog::Accepted ? QDir::toNativeSeparators(selectedFiles().value(0)) : QString();
}

/// The list of completions goes before the dialog does. The toolkit would close it after: it drops the news that the
/// window below has become active while a list is open, and nobody has the focus then.
void CFileDialog::done(int result)
{
    if (auto* name = findChild<QLineEdit*>(QStringLiteral("fileNameEdit")))
        name->setCompleter(nullptr);
    QFileDialog::done(result);
}

void CFileDialog::resizeEvent(QResizeEvent* event)
{
    QFileDialog::resizeEvent(event);
    FitNames();
}

/// At least as wide as what is told of the files in sight. The widths stay the user's to change.
void CFileDialog::FitColumns()
{
    auto* files = findChild<QTreeView*>(QStringLiteral("treeView"));
    if (files == nullptr)
        return;
    for (int column = kNames + 1; column < files->header()->count(); ++column) {
        const int before = files->columnWidth(column);
        files->resizeColumnToContents(column);
        files->setColumnWidth(column, std::max(files->columnWidth(column), before));
    }
    FitNames();
}

/// The names have what the other columns leave.
void CFileDialog::FitNames()
{
    auto* files = findChild<QTreeView*>(QStringLiteral("treeView"));
    if (files == nullptr)
        return;
    const QHeaderView& columns = *files->header();
    const int others = columns.length() - columns.sectionSize(kNames);
    const int least = kLeastNames * fontMetrics().averageCharWidth();
    files->setColumnWidth(kNames, std::max(files->viewport()->width() - others, least));
}
