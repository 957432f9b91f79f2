#pragma once

#include "library/FormatLibrary.h"
#include "library/LibraryOpening.h"
#include "views/RecipeFrame.h"

#include <QScrollArea>
#include <QString>

#include <filesystem>
#include <memory>

class QContextMenuEvent;
class QKeyEvent;
class QMenu;

namespace Ui {
class CRecipeFormatEditView;
}

/// The left pane: the formats of the library, the items of the selected one, and the settings of what to read.
///
/// Owns the format library. What it shows reaches the frame only through ApplyReadSettings, which copies the selected
/// format and the read settings into the frame's state. Every command that changes the library is used at once while
/// "Auto use dataformat" is checked; a changed library is saved when the pane goes, too.
///
/// The library file is written silently; while that fails the status bar says so. A file that was not understood in
/// full is copied before it is first overwritten (library/LibraryOriginal.h), and left alone when it cannot be copied.
/// The strip tells when the file is damaged or may only be read, and when the count of the selected format leaves out
/// items that are shown.
class CRecipeFormatEditView final : public QScrollArea {
    Q_OBJECT

public:
    /// Loads the library of the program with the full name `executable` and shows its first format; a library that
    /// holds none gets the built-in default format. `frame` outlives the view.
    CRecipeFormatEditView(CRecipeFrame& frame, const std::filesystem::path& executable, QWidget* parent = nullptr);
    ~CRecipeFormatEditView() override;

    /// Takes the pane's fields into the library, saves it, and copies the settings and the selected format into the
    /// frame's state. A negative start address or a row count below 1 is reported and stops before the frame is
    /// touched; the library keeps and stores even those.
    void ApplyReadSettings();

    /// Applies the settings and has the frame show its open file again through the selected format. Without any format
    /// the data pane is cleared.
    void UseFormat();

    bool HasSelectedFormat() const;

    /// The pattern of the file type that was opened last, "*.rcp" for example; kept in the library between runs.
    const QString& FilePattern() const { return m_strFilePattern; }
    void SetFilePattern(const QString& pattern) { m_strFilePattern = pattern; }

protected:
    void contextMenuEvent(QContextMenuEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void SetUpList();
    void CreateItemMenu();
    void ConnectControls();
    void LoadLibrary(const std::filesystem::path& executable);
    void EnsureFirstItem();
    void FillControls();
    void FillList();
    void ShowFormatLength();
    void ShowFormatSize();
    void TellCount();
    void KeepAllItems();
    void ShowChangedFormats();
    void ShowSelectedFormat();
    void SelectRow(int row);
    int CurrentRow() const;

    void SelectRowForKeys(Qt::FocusReason reason);
    bool HandleListKey(const QKeyEvent& event);
    void OpenItemMenu(int row, const QPoint& globalPosition);
    void OpenItemMenuAtCurrentRow();
    void OnAddItem();
    int TakeContextItem();
    void OnModifyItem();
    void OnDeleteItem();
    void OnDeleteAllItems();
    void OnAddFormat();
    void OnDeleteFormat();
    void EditItem(int row);
    void DeleteItem(int row);
    void AppendFormat(const QString& name);
    void UseChange();

    void StoreReadSettings();
    void TellLibraryState();
    void SaveLibrary();
    bool WriteLibrary();
    QString LibraryName() const;
    void HandOverFormat(const DataFormat& format);
    DataFormat* SelectedFormat() const;
    static FileType TypeByEnding(const QString& path);

    CRecipeFrame& m_frame;
    std::unique_ptr<Ui::CRecipeFormatEditView> m_pUi;
    FormatLibrary m_library;
    QMenu* m_pItemMenu = nullptr;
    bool m_bAutoUse = true;         ///< a changed format is used at once
    int m_nContextItem = -1;        ///< row that the item menu was opened on, -1 for none
    bool m_bLibraryChanged = false; ///< by an item or format command since the library was loaded
    bool m_bOriginalAtRisk = false; ///< the library file holds what the next save drops
    LibraryOpening m_opening;
    QString m_strCountTold; ///< what the strip was asked to say of the selected format's count
    QString m_strFilePattern;
};
