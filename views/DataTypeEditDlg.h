#pragma once

#include "model/DataItem.h"
#include "model/DataItemCheck.h"
#include "text/Reporter.h"

#include <QDialog>

#include <memory>

namespace Ui {
class CDataTypeEditDlg;
}

/// Asks for everything that a data item holds. OK checks it, writes it into the item and derives the item's bounds;
/// Cancel leaves the item as it was. A line in the dialog tells beforehand when the digits are of no use for the type
/// (LimitsNotice.h), and when a description is longer than its field.
///
/// kept: choosing the string type sets the item's `unicode` at once, also when the dialog is cancelled after that.
class CDataTypeEditDlg final : public QDialog {
    Q_OBJECT

public:
    enum class Mode { Add, Modify };

    /// `index` is the item's position in its format; a new item is described after it. `item` and `reporter` outlive
    /// the dialog. In Mode::Add the dialog proposes a signed 16-bit value, whatever `item` holds.
    CDataTypeEditDlg(int index, DataItem& item, Mode mode, CReporter& reporter, QWidget* parent = nullptr);
    ~CDataTypeEditDlg() override;

private:
    void FillLists();
    void ConnectControls();
    void ProposeItem(int index);
    void ShowItem();
    void ShowStringControls();
    void ShowArrayLength(bool shown);
    void TellLimits();
    void TellDescriptionLength(bool isTooLong);
    void DropHalfAtTheEnd();

    void OnArrayClicked();
    void OnTypeChanged();
    void OnDecimalChanged();
    void OnIntegerChanged();
    void OnOK();

    DataType SelectedType() const;
    DigitCounts SelectedDigits() const;
    ItemLengths EnteredLengths() const;
    void StoreIntoItem();

    std::unique_ptr<Ui::CDataTypeEditDlg> m_pUi;
    DataItem* m_pItem; ///< not owned
    CReporter& m_reporter;
};
