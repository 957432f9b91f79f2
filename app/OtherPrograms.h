#pragma once

#include "app/FileWatch.h"
#include "app/SaveCommands.h"
#include "document/RecipeDocument.h"

#include <QObject>

#include <functional>
#include <memory>

class CFileCommands;
class CRecipeDataShowView;
class CRecipeFrame;

/// Other programs that write the open file: the window looks when the system tells that something happened to it and
/// when it becomes the active one, and says in the strip what it found.
class COtherPrograms final : public QObject {
    Q_OBJECT

public:
    /// All outlive the object.
    COtherPrograms(CRecipeFrame& frame, CFileCommands& fileCommands, CSaveCommands& saveCommands,
                   CRecipeDataShowView& dataPane, QWidget& window);

    /// The document may have another file, or have read it again.
    void Follow();

    /// Looks at the file now.
    void Look();

    /// A save has ended: tells of what it wrote over.
    void TellOverwritten();

    /// The file was read: what was told of it holds no more.
    void WithdrawChanges();

signals:
    /// The user wants to see the earlier versions of the open file.
    void VersionsAskedFor();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Tell(const FileLook& look);
    void TellChanged(const std::shared_ptr<const ForeignChanges>& changes);
    void TellMissing(const QString& text);
    void Withdraw();
    void KeepMine(const ForeignChanges& changes);
    void List(const ForeignChanges& changes);

    CRecipeFrame& m_frame;
    CFileCommands& m_fileCommands;
    CSaveCommands& m_saveCommands;
    CRecipeDataShowView& m_dataPane;
    CFileWatch m_watch;
    std::shared_ptr<const CChangeList> m_pListed;
    FileLook m_told; ///< of the message that is in the strip, or that the user dismissed
};
