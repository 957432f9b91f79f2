#pragma once

#include "changes/CellPatch.h"

#include <QObject>
#include <QString>

#include <filesystem>
#include <memory>
#include <optional>

class CRecipeDataShowView;
class CRecipeFrame;
class CSaveCommands;
class QWidget;

namespace Ui {
class CMainFrame;
}

/// Applies a file of changes to the table: shows what it will change first, and makes it one edit when the user says so
/// in the strip. A patch that does not fit changes nothing, and the strip says why.
class CPatchCommands final : public QObject {
    Q_OBJECT

public:
    /// What the commands work on; all outlives the object.
    struct Parts {
        Ui::CMainFrame& ui;
        CRecipeFrame& frame;
        CSaveCommands& saveCommands;
        CRecipeDataShowView& dataPane;
        QWidget& window;
    };

    explicit CPatchCommands(const Parts& parts);

    /// Brings the command up to date with the document: a patch that was offered for other rows is offered no more.
    void Follow();

    /// What is offered, or was refused, is spoken of no more.
    void Withdraw();

private:
    /// A patch that may be applied, and the rows that it was read for.
    struct Offer {
        CellPatch patch;
        std::filesystem::path file;
        CRecipeRows layout;
    };

    void AskAndRead();
    void Look();
    void Apply();
    void Refuse(const QString& reason, const std::shared_ptr<const CChangeList>& others);
    void List(std::shared_ptr<const CChangeList> changes, const QString& title, const QString& summary);
    void WithdrawByButton();
    bool IsForTable() const;

    Parts m_parts;
    QString m_strName; ///< of the patch that is spoken of
    std::optional<Offer> m_offer;
    std::filesystem::path m_toldFor; ///< the file that was open then
    std::shared_ptr<const CChangeList> m_list;
};
