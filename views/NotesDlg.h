#pragma once

#include "model/ColumnCoding.h"
#include "model/ItemNotes.h"

#include <QDialog>
#include <QString>

#include <memory>

class QTableWidget;

namespace Ui {
class CNotesDlg;
}

/// Asks what the values of an item mean: unit, sensible range, comment, names of bits, texts for single values.
///
/// What cannot be taken is told at once in a line, and OK is off meanwhile. Names of bits that values of the item do
/// not have are not shown, and stay.
class CNotesDlg final : public QDialog {
    Q_OBJECT

public:
    /// `coding` is that of the item's values, with its name as the title; `notes` are shown first.
    CNotesDlg(ColumnCoding coding, ItemNotes notes, QWidget* parent = nullptr);
    ~CNotesDlg() override;

    /// After OK those that were entered, tidied.
    const ItemNotes& Notes() const { return m_notes; }

private:
    void ShowNotes();
    void ShowBits();
    void ShowTexts();
    void SetUpTable(QTableWidget& table);
    void ConnectControls();
    void AddText();
    void RemoveText();
    void AppendText(const ValueText& named);
    void EnableButtons();
    void Check();
    QString Fault(QWidget*& about) const;
    QString RangeFault(QWidget*& about) const;
    QString CommentFault() const;
    ItemNotes Entered() const;
    void OnOK();

    std::unique_ptr<Ui::CNotesDlg> m_pUi;
    ColumnCoding m_coding;
    ItemNotes m_notes;
    QWidget* m_pFaulty = nullptr; ///< the field that the line speaks of
};
