#pragma once

#include "recovery/VersionCells.h"
#include "recovery/VersionStore.h"

#include <QDialog>
#include <QTimer>

#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

class CRecipeDocument;

namespace Ui {
class CVersionsDlg;
}

/// Lists the earlier versions of the open recipe file, or of the format library, the newest first, forgets them, and
/// has the user say whether versions are kept. It is accepted with a wish for one of them, which the caller carries
/// out; the files themselves stay as they are.
///
/// How many values of the table a version has otherwise is counted while the dialog is idle, one version at a time.
class CVersionsDlg final : public QDialog {
    Q_OBJECT

public:
    enum class Wish { ShowDifferences, Compare, Restore };

    /// The recipe is the file of `document`. It and `store` outlive the dialog.
    CVersionsDlg(const CVersionStore& store, const CRecipeDocument& document, std::filesystem::path library,
                 QWidget* parent = nullptr);
    ~CVersionsDlg() override;

    // Once it was accepted.

    Wish Wanted() const { return m_wish; }
    bool IsOfLibrary() const;
    const Version& Chosen() const { return m_versions[m_chosen]; }

    /// Of the version whose differences were wished for, or that is to be compared.
    const VersionDifferences& Differences() const { return *m_differences; }

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    /// How many values differ: not counted yet, or nothing where that cannot be told.
    struct Count {
        bool isCounted = false;
        std::optional<std::size_t> values;
    };

    void SetUpTable();
    void FillFiles();
    void ConnectControls();
    void ShowWhetherKept();
    void OnKeepChosen(bool areKept);

    void ListVersions();
    void AddRow(int row);
    void ShowEmpty();
    void CountNext();
    void ShowCount(int row);
    std::optional<VersionDifferences> DifferencesOf(std::size_t version);
    std::optional<std::size_t> Current() const;
    void EnableButtons();

    void AcceptDifferences(Wish wish);
    void OnRestore();
    void AskToForget();
    void WithdrawQuestion();
    void OnForget();

    std::filesystem::path File() const;
    QString FileName() const;

    const CVersionStore& m_store;
    const CRecipeDocument& m_document;
    std::filesystem::path m_library;
    std::unique_ptr<Ui::CVersionsDlg> m_pUi;
    std::vector<Version> m_versions;
    std::vector<Count> m_counts;       ///< of each of them; empty where values are not asked for
    std::size_t m_nCounted = 0;        ///< versions, from the newest on
    std::optional<CStoredCells> m_now; ///< what the recipe file holds, once it was read
    QTimer m_counting;
    Wish m_wish = Wish::Restore;
    std::size_t m_chosen = 0;
    std::optional<VersionDifferences> m_differences;
};
