#pragma once

#include "document/RecipeDocument.h"
#include "files/NumberPlaces.h"

#include <QDialog>
#include <QTimer>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

class CFoundPlacesModel;

namespace Ui {
class CFindValueDlg;
}

/// Asks for a number and lists where it stands in the current file, as any type: in its words whatever the table shows,
/// or in the fields of a table of texts. It looks in slices of at most 8 ms, and stops where there are many places
/// until it is asked for more. Never writes.
class CFindValueDlg final : public QDialog {
    Q_OBJECT

public:
    static constexpr std::size_t kPlacesAtOnce = 1000;

    /// What to do with the chosen place; the dialog has been accepted then.
    enum class Wish { Nothing, GoTo, UseAsStart, AddAsItem };

    /// `number` stands in the field at first. `document` outlives the dialog.
    CFindValueDlg(const CRecipeDocument& document, const QString& number, QWidget* parent = nullptr);
    ~CFindValueDlg() override;

    Wish ChosenWish() const { return m_wish; }

    QString Number() const; ///< as typed

    // Of the place that was chosen.
    WordAddress Address() const;
    const NumberForm& Form() const;
    std::optional<CellPlace> Cell() const; ///< of the table that holds it

private:
    void SetUpTable();
    void ConnectControls();
    void OnFind();
    void OnStop();
    void OnMore();
    void LookOn();
    bool LookAtPiece();
    void ShowState();
    void EnableButtons();
    void Accept(Wish wish);
    bool IsTable() const { return m_document.Type() == FileType::Csv; }

    const CRecipeDocument& m_document;
    std::unique_ptr<Ui::CFindValueDlg> m_pUi;
    CFoundPlacesModel* m_pModel;
    std::vector<NumberForm> m_forms;
    std::unique_ptr<CNumberPlaces> m_places; ///< of a file of words, while it is looked through
    std::unique_ptr<CNumberFields> m_fields; ///< of a table of texts, likewise
    bool m_isDone = false;
    QString m_strFault;
    Wish m_wish = Wish::Nothing;
    QTimer m_looking;
};
