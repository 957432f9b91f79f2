#pragma once

#include "library/FormatStore.h"
#include "library/ItemsInUse.h"
#include "recovery/VersionStore.h"
#include "views/DataTypeEditDlg.h"
#include "views/FirstRow.h"
#include "views/RecipeFrame.h"

#include <QScrollArea>
#include <QString>
#include <QStringList>

#include <cstddef>
#include <filesystem>
#include <memory>

class CElidedLabel;
class QContextMenuEvent;
class QKeyEvent;
class QMenu;

namespace Ui {
class CRecipeFormatEditView;
}

/// The left pane: the formats of the library, the items of the selected one, and the settings of what to read.
///
/// It shows what its store of formats holds (library/FormatStore.h) and has it carry out the commands. What it shows
/// reaches the frame only through ApplyReadSettings, which copies the selected format and the read settings into the
/// frame's state. Every command that changes the library is used at once while "Auto use dataformat" is checked; a
/// changed library is saved when the pane goes, too.
///
/// The library file is written silently; while that fails the status bar says so. The strip tells when the file is
/// damaged or may only be read, and when the count of the selected format leaves out items that are shown.
///
/// Other windows may work on the same library. What they did to formats is shown after each save of the library, and
/// when another format is chosen; the format that was selected stays so, unless it is gone. What a command reads by is
/// what was shown when it was given.
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

    /// Selects the format at `index`, enters the read settings, and uses them, as a user would.
    void UseReading(std::size_t index, std::int32_t startAddress, std::int32_t rowCount);
    /// As UseFormat, with `address` in the field of the start address.
    void UseStartAddress(std::int32_t address);

    /// Asks for an item that is filled in as `item`, but for its name, and adds it after the current one of the
    /// selected format: as the list's own command does. Nothing where there is no format.
    void AddItem(const DataItem& item);

    /// Asks for the notes of an item of the library and sets them: as the list's own command does.
    void AskForNotes(const LibraryItem& place);

    bool HasSelectedFormat() const;

    /// Whoever changes its formats tells FormatChanged.
    CFormatStore& Store() { return m_store; }

    /// Has the library file kept in `versions`, which outlives the view, before its formats become others.
    void KeepVersionsIn(const CVersionStore& versions);

    /// Shows and selects the format at `index`, or the last one before that, after it was changed, put in or taken out
    /// from outside. Neither uses nor saves it. A format that became another one while it was selected keeps the
    /// current row.
    void FormatChanged(std::size_t index);

    /// Saves the library, and shows what others changed in it. Whether that succeeded is told in the status bar and in
    /// the strip, too.
    bool SaveFormats();

    /// Shows what others changed in the library's file, which is not written.
    void TakeOthers();

    /// Shows what the table's first row holds of the items. To be called when cells or rows may be others.
    void ShowFirstRow();

    /// The pattern of the file type that was opened last, "*.rcp" for example; kept in the library between runs.
    const QString& FilePattern() const { return m_strFilePattern; }
    void SetFilePattern(const QString& pattern) { m_strFilePattern = pattern; }

signals:
    /// The user had the format and the read settings used; whether they could be is for the document to tell.
    void FormatUsed();

    /// Formats of the library became others: by a command of the pane, or by what others did to them.
    void FormatsChanged();

protected:
    void contextMenuEvent(QContextMenuEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    enum class AfterChange { UseFormat, Save };

    void SetUpList();
    void CreateFirstRowLine();
    void TellFirstRow();
    void FitColumns();
    void CreateItemMenu();
    void CreateFormatMenu();
    void ConnectControls();
    void FillControls();
    void ShowNames();
    void FillList();
    void ShowFormatLength();
    void ShowFormatSize();
    void TellCount();
    void KeepAllItems();
    void ShowWhetherFormats();
    void ShowChangedFormats();
    void ShowSelectedFormat();
    void OnFormatChosen();
    void OnUseFormat();
    void ShowMoved();
    void SelectFormat(std::size_t index);
    void SelectRow(int row);
    int CurrentRow() const;

    void SelectRowForKeys(Qt::FocusReason reason);
    bool HandleListKey(const QKeyEvent& event);
    bool HandleMoveKey(const QKeyEvent& event);
    void OpenItemMenu(int row, const QPoint& globalPosition);
    void OpenItemMenuAtCurrentRow();
    void OnAddItem();
    void AskForItem(const DataItem& item, CDataTypeEditDlg::Mode mode);
    int TakeContextItem();
    void OnModifyItem();
    void OnDeleteItem();
    void OnDeleteAllItems();
    void OnMoveItem(int rows);
    void OnDuplicateItem();
    void OnItemNotes();
    void OnAddFormat();
    void OnDeleteFormat();
    void OnRenameFormat();
    void OnDuplicateFormat();
    void EditItem(int row);
    void DeleteItem(int row);
    void MoveItem(int row, int rows);
    void Made(EditKind kind, const FormatChange& change, AfterChange next = AfterChange::UseFormat);
    void TakeIntoUse(const FormatChange& change, AfterChange next);

    void StoreReadSettings();
    bool SaveAndKeepVersions();
    void TellLibraryState();
    QString LibraryName() const;
    std::size_t SelectedIndex() const;
    const DataFormat* SelectedFormat() const;
    static FileType TypeByEnding(const QString& path);

    CRecipeFrame& m_frame;
    std::unique_ptr<Ui::CRecipeFormatEditView> m_pUi;
    CFormatStore m_store;
    CFirstRow m_firstRow;
    CElidedLabel* m_pFirstRowLine = nullptr; ///< of the current item
    QMenu* m_pItemMenu = nullptr;
    bool m_isFitting = false;       ///< the columns' widths are being set
    bool m_areFittedByHand = false; ///< the user has set one
    bool m_bAutoUse = true;         ///< a changed format is used at once
    int m_nContextItem = -1;        ///< row that the item menu was opened on, -1 for none
    QString m_strCountTold;         ///< what the strip was asked to say of the selected format's count
    QString m_strFilePattern;
    QStringList m_versionTroubles; ///< of the files kept by the save that is going on; empty texts of those that were
    QString m_strVersionTrouble; ///< why the library or its notes were not kept when they changed; empty when they were
};
