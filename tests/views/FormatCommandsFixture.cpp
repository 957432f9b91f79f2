#include "tests/views/FormatCommandsFixture.h"

void FormatCommands::Start(const std::vector<DataFormat>& formats)
{
    Store(formats);
    FormatPane::Start();
    frame.document.StartNew();
}

void FormatCommands::Start()
{
    Start({kLine});
}

void FormatCommands::SelectFormat(int index)
{
    Formats().setFocus();
    for (int i = 0; i < index; ++i)
        QTest::keyClick(&Formats(), Qt::Key_Down);
    ASSERT_EQ(Formats().currentIndex(), index);
}

void FormatCommands::DeleteAllFormats()
{
    while (Formats().count() > 0)
        Press("buttonDeleteFormat");
}

DataItem ProposedItem(std::u16string_view description)
{
    return MakeItem(description, DataType::Signed16, 1, 1);
}

DataFormat NewFormat(std::u16string_view name)
{
    DataItem item = DefaultItem();
    SetText(item.description, u"Desc0");
    return MakeFormat(name, {item});
}

DataFormat With(DataFormat format, std::size_t position, const DataItem& item)
{
    format.insertItem(position, std::make_unique<DataItem>(item));
    ++format.itemCount;
    return format;
}

DataFormat Without(DataFormat format, std::size_t position)
{
    format.removeItem(position);
    return format;
}

CModalAnswer::Action Describe(const QString& description)
{
    return [description](QWidget& dialog) {
        TypeInto(dialog, "editDescription", description);
        ClickOn(dialog, "buttonOk");
    };
}

CModalAnswer::Action Name(const QString& name)
{
    return [name](QWidget& dialog) {
        TypeInto(dialog, "editName", name);
        ClickOn(dialog, "buttonOk");
    };
}
