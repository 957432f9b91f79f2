#pragma once

#include "model/DataItem.h"

#include <QDialog>
#include <QString>

#include <memory>
#include <string>

class CRecipeFrame;
class QListWidget;
class QListWidgetItem;

namespace Ui {
class CBitBrowserDlg;
}

/// Shows the value of one integer cell as a matrix of bits, lets the user flip them, and hands the new text back on OK.
/// It works on the cell's text alone and touches neither the grid nor the recipe.
///
/// Bits that the item's notes name are listed below the matrix, too, each with a box that flips it as its square does.
class CBitBrowserDlg final : public QDialog {
    Q_OBJECT

public:
    /// For the cell at grid `column` and `row`, which shows `text` and holds a value of `item`. `frame` outlives the
    /// dialog; it checks and reports the value, and is marked as modified on OK.
    CBitBrowserDlg(CRecipeFrame& frame, const DataItem& item, int column, int row, const QString& text,
                   QWidget* parent = nullptr);
    ~CBitBrowserDlg() override;

signals:
    /// The text was accepted for the cell; sent before the dialog closes.
    void CellValueAccepted(int column, int row, const QString& text);

private:
    void StyleMatrix();
    void AddColumns();
    void FillBoxes();
    void FillMatrix();
    std::u16string MatrixBits() const;
    void ShowBit(int row, int column);
    void OnBitToggled(int row, int column);
    void OnOK();

    QString NameOf(int bit) const;
    int BitAt(int row, int column) const;
    void AddNames();
    void ShowNamed(int bit, bool set);
    void OnNamedChanged(const QListWidgetItem& named);

    CRecipeFrame& m_frame;
    DataItem m_item;
    int m_nColumn;
    int m_nRow;
    QString m_strValue; ///< as the Value box shows it
    std::unique_ptr<Ui::CBitBrowserDlg> m_pUi;
    QListWidget* m_pNames = nullptr; ///< of the bits; null where none has one
};
