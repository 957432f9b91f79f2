#pragma once

#include "recovery/VersionRestore.h"
#include "recovery/VersionStore.h"

#include <QObject>
#include <QString>

class CCompareCommands;
class CFileCommands;
class CRecipeDataShowView;
class CRecipeFormatEditView;
class CRecipeFrame;
class CSaveCommands;
class CVersionsDlg;
class QWidget;

namespace Ui {
class CMainFrame;
}

/// Earlier versions of the open recipe file and of the format library: lists them in a dialog, and carries out what is
/// wished for there.
class CVersionCommands final : public QObject {
    Q_OBJECT

public:
    /// What the commands work on; all outlives the object.
    struct Parts {
        Ui::CMainFrame& ui;
        CRecipeFrame& frame;
        CFileCommands& fileCommands;
        CSaveCommands& saveCommands;
        CCompareCommands& compareCommands;
        CRecipeFormatEditView& formatPane;
        CRecipeDataShowView& dataPane;
        QWidget& window;
    };

    explicit CVersionCommands(const Parts& parts);

    /// The versions lie in `store`, which outlives the object. The command is disabled before.
    void UseStore(const CVersionStore& store);

    /// Brings the command up to date with the document.
    void Update();

signals:
    /// The open file was restored, or, unless `isWhole`, left with old and new words.
    void Restored(const QString& path, bool isWhole);

private:
    void Open();
    void ShowDifferences(const CVersionsDlg& dialog);
    void Compare(const CVersionsDlg& dialog);
    void RestoreRecipe(const Version& version);
    void RestoreFormats(const Version& version);
    void Tell(QString text, const VersionKept& kept, const std::filesystem::path& file);

    Parts m_parts;
    const CVersionStore* m_pStore = nullptr; ///< null before UseStore
};
