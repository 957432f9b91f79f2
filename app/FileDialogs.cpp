#include "app/FileDialogs.h"

#include "controls/FileDialog.h"

#include <QFileInfo>

namespace {

const QString kProposedName = QStringLiteral("new");
const QString kDefaultPattern = QStringLiteral("*.rcp");

/// "rcp" of "*.rcp" and of "(*.rcp)".
QString SuffixIn(const QString& filter)
{
    QString suffix = filter.mid(filter.lastIndexOf(QLatin1Char('.')) + 1);
    return suffix.remove(QLatin1Char(')'));
}

QString RunDialog(CFileDialog& dialog, const QStringList& filters, const QString& pattern,
                  const QString& name = kProposedName)
{
    dialog.setFileMode(QFileDialog::AnyFile); // a missing file is reported by the program, in its own words
    if (!filters.isEmpty())
        dialog.setNameFilters(filters);
    dialog.setDefaultSuffix(SuffixIn(pattern));
    QObject::connect(&dialog, &CFileDialog::filterSelected, &dialog,
                     [&dialog](const QString& filter) { dialog.setDefaultSuffix(SuffixIn(filter)); });
    if (!name.isEmpty())
        dialog.selectFile(name);
    return dialog.AskPath();
}

/// The dialog adds the ending of the chosen type, but only to a name without a dot.
QString NameOfCopy(const QFileInfo& file)
{
    const QString base = file.completeBaseName();
    if (base.isEmpty())
        return kProposedName;
    const QString name = QObject::tr("%1 copy").arg(base);
    return base.contains(QLatin1Char('.')) ? name + QLatin1Char('.') + file.suffix() : name;
}

} // namespace

QStringList SaveFilters()
{
    return OpenFilters(kDefaultPattern);
}

QStringList OpenFilters(const QString& pattern)
{
    const auto filters = [](std::initializer_list<const char*> endings) {
        QStringList list;
        for (const char* ending : endings)
            list.append(QStringLiteral("(*.%1)").arg(QLatin1String(ending)));
        return list;
    };
    if (pattern == QLatin1String("*.rcp"))
        return filters({"rcp", "csv", "erp", "frp"});
    if (pattern == QLatin1String("*.csv"))
        return filters({"csv", "rcp", "erp", "frp"});
    if (pattern == QLatin1String("*.erp"))
        return filters({"erp", "csv", "rcp", "frp"});
    if (pattern == QLatin1String("*.frp"))
        return filters({"frp", "erp", "csv", "rcp"});
    return {};
}

QString AskOpenPath(QWidget& parent, const QString& pattern, const QString& folder)
{
    CFileDialog dialog(&parent, QObject::tr("Open file"), folder);
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    return RunDialog(dialog, OpenFilters(pattern), pattern);
}

QString AskComparePath(QWidget& parent, const QString& pattern, const QString& folder)
{
    CFileDialog dialog(&parent, QObject::tr("Compare with"), folder);
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    const QString known = OpenFilters(pattern).isEmpty() ? kDefaultPattern : pattern;
    return RunDialog(dialog, OpenFilters(known), known, {});
}

QString AskPatchPath(QWidget& parent, const QString& folder)
{
    CFileDialog dialog(&parent, QObject::tr("Apply patch"), folder);
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    dialog.setFileMode(QFileDialog::AnyFile); // a missing file is reported by the program
    dialog.setNameFilters({QObject::tr("Changes (*.jsonl)"), QObject::tr("All files (*)")});
    return dialog.AskPath();
}

QString AskTablePath(QWidget& parent, const QString& folder)
{
    CFileDialog dialog(&parent, QObject::tr("Import table"), folder);
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    dialog.setFileMode(QFileDialog::AnyFile); // a missing file is reported by the program
    dialog.setNameFilters({QObject::tr("Tables (*.csv *.tsv *.txt)"), QObject::tr("All files (*)")});
    return dialog.AskPath();
}

QString AskSavePath(QWidget& parent, const QString& folder)
{
    CFileDialog dialog(&parent, QObject::tr("Save as"), folder);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    return RunDialog(dialog, SaveFilters(), kDefaultPattern);
}

QString AskExportPath(QWidget& parent, const QString& path)
{
    const QFileInfo file(path);
    CFileDialog dialog(&parent, QObject::tr("Export table"), path.isEmpty() ? QString() : file.absolutePath());
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setNameFilters({QObject::tr("Tables (*.csv *.tsv *.txt)"), QObject::tr("All files (*)")});
    dialog.setDefaultSuffix(QStringLiteral("csv"));
    if (!path.isEmpty())
        dialog.selectFile(QObject::tr("%1 table.csv").arg(file.completeBaseName()));
    return dialog.AskPath();
}

QString AskSheetPath(QWidget& parent, const QString& ending, const QString& folder, const QString& name)
{
    CFileDialog dialog(&parent, QObject::tr("Save the sheet"), folder);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    const QString pattern = QStringLiteral("*.") + ending;
    const QString proposed = name.isEmpty() ? QObject::tr("sheet") : name;
    return RunDialog(dialog, {QStringLiteral("(%1)").arg(pattern)}, pattern, proposed + QLatin1Char('.') + ending);
}

QString AskCopyPath(QWidget& parent, const QString& path)
{
    const QFileInfo file(path);
    CFileDialog dialog(&parent, QObject::tr("Save a copy"), path.isEmpty() ? QString() : file.absolutePath());
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    const QString ownPattern = QStringLiteral("*.") + file.suffix().toLower();
    const QString pattern = OpenFilters(ownPattern).isEmpty() ? kDefaultPattern : ownPattern;
    return RunDialog(dialog, OpenFilters(pattern), pattern, NameOfCopy(file));
}
