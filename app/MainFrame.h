#pragma once

#include "app/CompareCommands.h"
#include "app/EditCommands.h"
#include "app/ExportCommands.h"
#include "app/FileCommands.h"
#include "app/FillCommands.h"
#include "app/FindCommands.h"
#include "app/FindValueCommands.h"
#include "app/GoToCommands.h"
#include "app/ImportCommands.h"
#include "app/LockKeys.h"
#include "app/OfferCommands.h"
#include "app/OtherPrograms.h"
#include "app/PatchCommands.h"
#include "app/RangeNotice.h"
#include "app/ReadingCommands.h"
#include "app/ReplaceCommands.h"
#include "app/SaveCommands.h"
#include "app/SheetCommands.h"
#include "app/TableCommands.h"
#include "app/UnsavedCommands.h"
#include "app/VersionCommands.h"
#include "views/MessageBoxReporter.h"
#include "views/RecipeFrame.h"

#include <QMainWindow>

#include <array>
#include <filesystem>
#include <memory>

class CInspectorDock;
class CMySplitter;
class CRecipeDataShowView;
class CRecipeFormatEditView;
class QLabel;

namespace Ui {
class CMainFrame;
}

/// The main window: menus, tool bar, status bar, and the two panes with a splitter between them. Keeps the document and
/// routes the commands.
class CMainFrame final : public QMainWindow, public CRecipeFrame {
    Q_OBJECT

public:
    /// `executable` is the program's full name: it tells where the format library lies.
    explicit CMainFrame(const std::filesystem::path& executable, QWidget* parent = nullptr);
    ~CMainFrame() override;

    CRecipeDocument& Document() override { return m_document; }
    const CRecipeDocument& Document() const override { return m_document; }
    void ShowRecipeData(FileType type) override;
    SaveResult RefreshRecipeData(FileType type, const QString& path, ForeignRule rule) override;
    bool SaveRecipeDataAs(FileType type, const QString& path) override;
    SaveResult SaveEditedRecipeData(ForeignRule rule) override;
    bool SaveRecipeDataCopy(FileType type, const QString& path) override;
    void ClearRecipeData() override;
    bool ValidateCellValue(int gridColumn, const QString& text) const override;
    void SetTitle(const QString& title) override;
    void UpdateCommands() override;
    void TellEdit(const QString& text) override;
    void WithdrawEdit() override;
    void ShowStrip(StripSubject subject, const StripMessage& message) override;
    void AnswerInStrip(StripSubject subject, const StripMessage& message) override;
    void WithdrawStrip(StripSubject subject) override;
    void TellLibraryTrouble(const QString& trouble) override;
    CReporter& Reporter() override { return m_reporter; }

    /// Opens the file at `path` as the Open command opens a chosen one.
    void OpenPath(const QString& path);

    /// Keeps earlier versions of files, and edits that are not saved, in `dataFolder` from now on, and offers the edits
    /// that other windows left there. To be called once, if at all.
    void KeepIn(const std::filesystem::path& dataFolder);

protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    struct SaveNotice { ///< what the status bar goes on saying of a save; empty where there is nothing to say
        QString path;   ///< of the file that it is about
        QString text;
        QString inFull; ///< the same, with the whole path
    };

    void CreatePanes();
    void CreateCommands();
    void CreateComparing();
    void CreateInspector();
    void CreateForManyCells();
    void CreateFinding();
    void CreateStatusPanes();
    void ConnectCommands();
    void AddAccelerators();
    void Announce(const QString& text);
    void ShowLockKeys();
    void TellState(const SaveResult& result, const QString& path);
    static SaveNotice NoticeOf(const QString& text, const QString& path);
    void TellVersion(const std::filesystem::path& path);
    void TellLeftOut(const QString& path);
    void ForgetLeftOut();
    void ShowMessage();
    void SwitchPane(int direction);
    QList<QWidget*> PanesInSight() const;
    void MergeFiles();
    void ShowAbout();

    std::filesystem::path m_executable;
    bool m_isKeeping = false; ///< KeepIn was called
    CVersionStore m_versions{{}};
    CRecipeDocument m_document;
    std::unique_ptr<Ui::CMainFrame> m_pUi;
    CMessageBoxReporter m_reporter;
    CLockKeys m_lockKeys;
    CStrip* m_pStrip = nullptr;
    CMySplitter* m_pSplitter = nullptr;
    CRecipeFormatEditView* m_pFormatPane = nullptr;
    CRecipeDataShowView* m_pDataPane = nullptr;
    int m_nLeftPaneWidth = 0; ///< pixels to which the left pane is restored
    std::unique_ptr<CFileCommands> m_pFileCommands;
    std::unique_ptr<CEditCommands> m_pEditCommands;
    std::unique_ptr<CSaveCommands> m_pSaveCommands;
    std::unique_ptr<COtherPrograms> m_pOtherPrograms;
    std::unique_ptr<CUnsavedCommands> m_pUnsavedCommands;
    std::unique_ptr<CCompareCommands> m_pCompareCommands;
    std::unique_ptr<CPatchCommands> m_pPatchCommands;
    std::unique_ptr<CVersionCommands> m_pVersionCommands;
    std::unique_ptr<CRangeNotice> m_pRangeNotice;
    CInspectorDock* m_pInspector = nullptr;
    std::unique_ptr<CReadingCommands> m_pReadingCommands;
    std::unique_ptr<COfferCommands> m_pOfferCommands;
    std::unique_ptr<CFillCommands> m_pFillCommands;
    std::unique_ptr<CImportCommands> m_pImportCommands;
    std::unique_ptr<CExportCommands> m_pExportCommands;
    std::unique_ptr<CSheetCommands> m_pSheetCommands;
    std::unique_ptr<CTableCommands> m_pTableCommands;
    std::unique_ptr<CGoToCommands> m_pGoToCommands;
    std::unique_ptr<CFindCommands> m_pFindCommands;
    std::unique_ptr<CReplaceCommands> m_pReplaceCommands;
    std::unique_ptr<CFindValueCommands> m_pFindValueCommands;
    QLabel* m_pMessage = nullptr;
    SaveNotice m_tornSave;       ///< what a save that failed part-way left behind
    SaveNotice m_leftOutSave;    ///< that a save wrote nothing
    QString m_strEditNotice;     ///< what was undone, for one
    QString m_strLibraryTrouble; ///< why the data formats are not saved; empty while they are
    QString m_strVersionTrouble; ///< likewise, why no earlier version was kept
    QString m_strUnsavedTrouble; ///< likewise, why edits are not kept
    std::array<QLabel*, CLockKeys::KeyCount> m_lockLabels{};
    QAction* m_pUnopenedSave = nullptr; ///< Ctrl+S while Save itself is disabled
};
