#pragma once

#include <QString>
#include <QStringList>

class QWidget;

/// The types of the save dialogs, the selected one first.
QStringList SaveFilters();

/// The types of the open dialog when `pattern` ("*.rcp" for example) was opened last, the selected one first; none for
/// a pattern of no known type.
QStringList OpenFilters(const QString& pattern);

/// Asks which file to open, `pattern`'s type first; `folder` is where the dialog starts. The chosen full path, or empty
/// when the user cancelled. A name that does not exist is returned too: the caller reports it.
QString AskOpenPath(QWidget& parent, const QString& pattern, const QString& folder);

/// Asks where to save; asks again before an existing file would be replaced. The chosen full path, or empty when the
/// user cancelled.
QString AskSavePath(QWidget& parent, const QString& folder);

/// Asks which recipe file to compare with, as AskOpenPath.
QString AskComparePath(QWidget& parent, const QString& pattern, const QString& folder);

/// Asks for a file of changes, as AskOpenPath.
QString AskPatchPath(QWidget& parent, const QString& folder);

/// Asks for a text file with a table, as AskOpenPath.
QString AskTablePath(QWidget& parent, const QString& folder);

/// Asks where to write a table for other programs: beside the file at `path`, empty for a new document; asks again
/// before an existing file would be replaced. A name without an ending gets ".csv". The chosen full path, or empty when
/// the user cancelled.
QString AskExportPath(QWidget& parent, const QString& path);

/// Asks where to write a sheet, "pdf" or "html" by its `ending`, as AskSavePath; `name` is proposed, without its
/// ending.
QString AskSheetPath(QWidget& parent, const QString& ending, const QString& folder, const QString& name);

/// Asks likewise where to write a copy of the file at `path`, empty for a new document: beside it, of its type.
QString AskCopyPath(QWidget& parent, const QString& path);
