#include "tests/views/ItemDialogFixture.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QTest>

void ItemDialog::Add(int index)
{
    item = *CreateItem(20);
    Open(index, Mode::Add);
}

void ItemDialog::Modify(const DataItem& shown)
{
    item = shown;
    Open(0, Mode::Modify);
}

void ItemDialog::Open(int index, Mode mode)
{
    dialog = std::make_unique<CDataTypeEditDlg>(index, item, mode, reporter);
    QObject::connect(dialog.get(), &CDataTypeEditDlg::UnicodeTaken, dialog.get(),
                     [this](std::int32_t unicode) { item.unicode = unicode; });
    QObject::connect(dialog.get(), &QDialog::accepted, dialog.get(), [this] { item = dialog->Item(); });
    ASSERT_TRUE(ShowActive(*dialog));
}

void ItemDialog::Choose(const char* name, const QString& entry)
{
    auto& list = Find<QComboBox>(name);
    const int index = list.findText(entry);
    ASSERT_GE(index, 0) << entry.toStdString();
    list.setFocus();
    QTest::keyClick(&list, Qt::Key_F4);
    QTest::keyClick(list.view(), Qt::Key_Home);
    for (int i = 0; i < index; ++i)
        QTest::keyClick(list.view(), Qt::Key_Down);
    QTest::keyClick(list.view(), Qt::Key_Return);
    ASSERT_TRUE(WaitFor([&] { return !list.view()->isVisible(); }));
}

bool ItemDialog::IsChecked(const char* name) const
{
    return Find<QAbstractButton>(name).isChecked();
}

void ItemDialog::Click(const char* box)
{
    auto& button = Find<QAbstractButton>(box);
    QTest::mouseClick(&button, Qt::LeftButton, {}, QPoint(8, button.height() / 2));
}

DataItem StringItem(std::int32_t words, std::int32_t unicode)
{
    DataItem item = MakeItem(u"Name", DataType::String, words, 1);
    item.unicode = unicode;
    return item;
}

DataItem WithCode(DataItem item, CodeType codeType)
{
    item.codeType = codeType;
    return item;
}
