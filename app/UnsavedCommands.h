#pragma once

#include "changes/ChangeList.h"
#include "recovery/UnsavedStore.h"

#include <QObject>
#include <QString>
#include <QTimer>

#include <filesystem>
#include <list>
#include <memory>
#include <optional>
#include <vector>

class CFileCommands;
class CRecipeDataShowView;
class CRecipeFrame;
class CSaveCommands;

/// Edits that were not saved. Those of this window are on the disk soon after they were made. Those that other windows
/// left behind are offered in the strip, one journal after the other: to be put back, to be looked at, or to be given
/// up.
class CUnsavedCommands final : public QObject {
    Q_OBJECT

public:
    /// All outlive the object.
    CUnsavedCommands(CRecipeFrame& frame, CFileCommands& fileCommands, CRecipeDataShowView& dataPane,
                     CSaveCommands& saveCommands);

    /// Has the document keep its edits in `dataFolder`, and offers what was left there.
    void Start(const std::filesystem::path& dataFolder);

    /// The document may have other edits.
    void Follow();

signals:
    /// Why the edits of this window are not kept; empty while they are.
    void TroubleChanged(const QString& trouble);

private:
    void Flush();
    void TellTrouble();
    void OfferNext();
    void SetAside();
    QString OfferText() const;
    bool OpenItsFile();
    void PutBack();
    void TellPutBack(std::size_t count, std::vector<UnsavedCell> others);
    void Show();
    void Discard();
    std::shared_ptr<const CChangeList> List(UnsavedWork work, const QString& title, const QString& summary);

    CRecipeFrame& m_frame;
    CFileCommands& m_fileCommands;
    CRecipeDataShowView& m_dataPane;
    CSaveCommands& m_saveCommands;
    CUnsavedStore m_store{{}};
    std::optional<CClaimedWork> m_offered;
    std::list<CClaimedWork> m_setAside;           ///< could not be put back; offered again after all others
    std::shared_ptr<const CChangeList> m_pListed; ///< of the edits that are offered
    QTimer m_flushing;
    QString m_strTrouble;
};
