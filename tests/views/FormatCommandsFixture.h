#pragma once

#include "tests/support/ModalAnswer.h"
#include "tests/views/FormatPaneFixture.h"

/// The format pane over formats of its own with a file open, auto use on, and what its dialogs are answered with.
struct FormatCommands : FormatPane {
    void Start(const std::vector<DataFormat>& formats);
    void Start(); ///< with kLine alone

    void SelectFormat(int index); ///< by keys, from the first format
    void DeleteAllFormats();
};

inline DataItem Word(std::u16string_view description)
{
    return MakeItem(description, DataType::Signed16, 1, 5);
}

inline const DataFormat kLine = MakeFormat(u"Line", {Word(u"A"), Word(u"B"), Word(u"C"), Word(u"D")});
inline const DataFormat kMixer = MakeFormat(u"Mixer", {MakeItem(u"Speed", DataType::Unsigned32, 2, 10)});
inline const DataFormat kTank = MakeFormat(u"Tank", {MakeItem(u"Level", DataType::Float, 2, 4, 1)});

DataItem ProposedItem(std::u16string_view description); ///< what the dialog makes when it is accepted as it comes up
DataFormat NewFormat(std::u16string_view name);         ///< what "Add Dataformat" makes

DataFormat With(DataFormat format, std::size_t position, const DataItem& item);
DataFormat Without(DataFormat format, std::size_t position);

CModalAnswer::Action Describe(const QString& description); ///< in the dialog of an item, then OK
CModalAnswer::Action Name(const QString& name);            ///< in the dialog of a new format, then OK

inline const CModalAnswer::Action kOk = CModalAnswer::PressNamed("buttonOk");
inline const CModalAnswer::Action kCancel = CModalAnswer::PressNamed("buttonCancel");
