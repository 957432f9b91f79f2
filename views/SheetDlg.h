#pragma once

#include "document/DocumentSheet.h"
#include "recovery/VersionStore.h"

#include <QDialog>
#include <QPrinter>
#include <QString>
#include <QTimer>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class CSheetPainter;
class QPrintPreviewWidget;

namespace Ui {
class CSheetDlg;
}

/// Shows a sheet of the open recipe as it will be printed, has the user say what is to be on it, and prints it or
/// writes it as PDF or HTML. The recipe stays as it is. What cannot be done is told in a line of the dialog.
class CSheetDlg final : public QDialog {
    Q_OBJECT

public:
    /// The pages that a preview shows at most.
    static constexpr int kMostPreviewed = 50;

    /// Rows that may be on it besides all: counted from 0, ascending. Nothing where that is no choice.
    struct RowChoices {
        std::optional<std::vector<std::int32_t>> shown;
        std::optional<std::vector<std::int32_t>> chosen;
    };

    /// How the user is asked for paths; an empty one is none.
    struct Paths {
        std::function<QString(QWidget&)> askOther;                        ///< recipe file to compare with
        std::function<QString(QWidget&, const QString& ending)> askSheet; ///< "pdf" or "html"
    };

    /// Of the file of `document`; it and `store`, which may be null, outlive the dialog.
    CSheetDlg(const CRecipeDocument& document, const CVersionStore* store, RowChoices rows, Paths paths,
              QWidget* parent = nullptr);
    ~CSheetDlg() override;

    /// Finds out what the file holds. False when the user has given that up: there is nothing to show then.
    bool ReadFile();

private:
    void SetUp();
    void FillRows();
    void FillSince();
    void ConnectControls();
    void OnSinceChosen();
    void MakeAnew();
    void LayOut();
    void PaintPreview(QPrinter& printer);
    void ShowState(const QString& fault, const QString& done = {});
    QString PagesText() const;
    void BringUpToDate();
    SheetOrder Order() const;
    QString SinceName() const;
    SheetPaper Paper() const;
    void Save(const QString& path);
    bool MakeBytes(const std::filesystem::path& path, std::string& bytes, CReporter& reporter);
    Outcome PrintOn(QPrinter& printer);
    void OnPrint();
    void OnSave(const QString& ending);

    std::unique_ptr<Ui::CSheetDlg> m_pUi;
    const CRecipeDocument& m_document;
    const RowChoices m_rows;
    const Paths m_paths;
    CDocumentSheet m_made;
    std::vector<Version> m_versions;
    QString m_strOther; ///< the file that is compared with
    int m_nSince = 0;   ///< the entry that was chosen last
    QPrinter m_printer; ///< that of the preview
    QPrintPreviewWidget* m_pPreview;
    QTimer m_typing;                           ///< makes the sheet anew when the user pauses
    std::unique_ptr<CSheetPainter> m_pPainter; ///< null while there is no sheet
};
