#pragma once

#include "merge/MergeFileChoice.h"
#include "merge/MergeParams.h"
#include "recovery/VersionStore.h"
#include "text/Reporter.h"

#include <QDialog>

#include <filesystem>
#include <memory>
#include <string>

namespace Ui {
class CMergeParamDlg;
}

/// Asks which stretch of each of two recipe files goes where in a new one, and merges them. Ends with OK only when the
/// merged file is written; after a refusal or a failure it stays open, its fields as they were.
class CMergeParamDlg final : public QDialog {
    Q_OBJECT

public:
    /// The merged file is first offered the folder of `executable`, the program's full name. `reporter` outlives the
    /// dialog.
    CMergeParamDlg(std::filesystem::path executable, CReporter& reporter, QWidget* parent = nullptr);
    ~CMergeParamDlg() override;

    /// Has a file that the merge replaces kept in `versions`, which outlives the dialog.
    void KeepVersionsIn(const CVersionStore& versions) { m_pVersions = &versions; }

    /// Why that was not possible at the last merge; empty when it was.
    const std::u16string& VersionTrouble() const { return m_versionTrouble; }

private:
    struct SourceFields;

    void OnChooseFile(MergeSource source);
    void OnChooseMergedPath();
    void OnOK();

    SourceFields FieldsOf(MergeSource source) const;
    MergedSize ChosenSize() const;
    MergeParams Params() const;

    std::unique_ptr<Ui::CMergeParamDlg> m_pUi;
    std::filesystem::path m_executable;
    CReporter& m_reporter;
    const CVersionStore* m_pVersions = nullptr;
    std::u16string m_versionTrouble;
};
