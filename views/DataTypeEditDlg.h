#pragma once

#include "model/DataItem.h"
#include "model/DataItemCheck.h"
#include "text/Reporter.h"

#include <QDialog>

#include <memory>

namespace Ui {
class CDataTypeEditDlg;
}

/// Asks for everything that a data item holds, and hands back an item: OK checks what was entered and derives the
/// item's bounds. A line in the dialog tells beforehand when the digits are of no use for the type (LimitsNotice.h),
/// and when a description is longer than its field.
class CDataTypeEditDlg final : public QDialog {
    Q_OBJECT

public:
    enum class Mode { Add, AddFilled, Modify };

    /// `index` is the item's position in its format; a new item is described after it. `reporter` outlives the dialog.
    /// In Mode::Add the dialog proposes a signed 16-bit value, whatever `item` holds; in the others it shows `item`.
    CDataTypeEditDlg(int index, DataItem item, Mode mode, CReporter& reporter, QWidget* parent = nullptr);
    ~CDataTypeEditDlg() override;

    /// After OK the item as it was entered; what was not asked for is as it was in the one that came in.
    const DataItem& Item() const { return m_item; }

signals:
    /// The string type was chosen, and this is to become the `unicode` of the owner's item at once.
    /// kept: even when the dialog is cancelled after that
    void UnicodeTaken(std::int32_t unicode);

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
    void OnNotes();
    void OnOK();

    DataType SelectedType() const;
    DigitCounts SelectedDigits() const;
    ItemLengths EnteredLengths() const;
    void TakeUnicode();
    std::int32_t UnicodeChosen() const;
    DataItem EnteredItem() const;

    std::unique_ptr<Ui::CDataTypeEditDlg> m_pUi;
    DataItem m_item;
    CReporter& m_reporter;
};
