#pragma once

#include "tests/support/DialogSteps.h"
#include "tests/support/Formats.h"
#include "tests/support/GuiTest.h"
#include "tests/support/RecordingReporter.h"
#include "views/DataTypeEditDlg.h"

#include <QComboBox>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

/// The dialog of a data item, over a reporter of one test's own and an item that takes what the dialog hands back.
struct ItemDialog : testing::Test {
    using Mode = CDataTypeEditDlg::Mode;
    using Shown = std::vector<std::u16string>;

    void Add(int index = 0);            ///< for a new item
    void Modify(const DataItem& shown); ///< for a copy of `shown`

    template <class Widget>
    Widget& Find(const char* name) const
    {
        return FindIn<Widget>(*dialog, name);
    }

    /// Opens the list `name` and chooses an entry in it.
    void Choose(const char* name, const QString& entry);
    void ChooseType(DataType type) { Choose("comboType", QString::fromStdU16String(std::u16string(TypeName(type)))); }

    QString Chosen(const char* list) const { return Find<QComboBox>(list).currentText(); }
    std::string Text(const char* edit) const { return TextIn(*dialog, edit); }
    bool IsEnabled(const char* name) const { return Find<QWidget>(name).isEnabled(); }
    bool IsShown(const char* name) const { return Find<QWidget>(name).isVisible(); }
    bool IsChecked(const char* name) const;

    void Click(const char* box); ///< a radio button or a check box, on its mark
    void Type(const char* edit, const QString& text) { TypeInto(*dialog, edit, text); }
    void PressOk() { ClickOn(*dialog, "buttonOk"); }
    void PressCancel() { ClickOn(*dialog, "buttonCancel"); }
    bool IsAccepted() const { return !dialog->isVisible() && dialog->result() == QDialog::Accepted; }

    DataItem item;
    CRecordingReporter reporter;
    std::unique_ptr<CDataTypeEditDlg> dialog;

private:
    void Open(int index, Mode mode);
};

DataItem StringItem(std::int32_t words, std::int32_t unicode = 0);
DataItem WithCode(DataItem item, CodeType codeType);
