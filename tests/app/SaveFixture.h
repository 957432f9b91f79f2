#pragma once

#include "controls/GridCtrl.h"
#include "tests/app/EditFixture.h"

#include <QAbstractItemModel>
#include <QStringList>

class CChangesPanel;
class QTableView;
class QToolButton;

/// The window over "oven.rcp": four rows of five words, a "Belt" with two decimals, a "Steam" of which one decimal is
/// shown, and a "Name". A save would store three values otherwise: the belts of rows 1 and 4, and the steam of row 2.
struct SaveFixture : EditFixture {
    SaveFixture();
    void SetUp() override;

    static constexpr int kBelt = 2; ///< columns of the grid
    static constexpr int kSteam = 3;
    static constexpr int kName = 4;

    void Open(const std::string& name) { frame->OpenPath(Path(name)); }
    /// As a user who types a name into the dialog.
    void OpenByDialog(const std::string& name);
    void WriteOven(const std::string& name) { WriteAll(folder / name, oven); }
    Bytes Oven() const { return ReadAll(folder / "oven.rcp"); }
    /// "oven.rcp" as it was, with these words in place of its own.
    Bytes OvenWith(std::initializer_list<std::pair<std::size_t, std::uint16_t>> words) const;
    void SaveEditedOnly() { Key(Qt::Key_F9, Qt::ShiftModifier); }

    /// The counting is over.
    void WaitForPlan();
    /// What the status bar counts, when the counting is over; "" while it shows nothing.
    QString Field();
    QToolButton& FieldButton();

    /// What the strip says; "" while it is hidden.
    QString Strip();
    QStringList StripButtons();
    void ClickInStrip(const QString& button);
    /// Goes to the strip by F6 and to the button by Tab, and presses it by Enter.
    void PressInStripByKeys(const QString& button);

    CChangesPanel& Panel();
    QTableView& Lines();
    /// "row item old>new why" of each line.
    QStringList Listed();
    QString PanelSummary();
    void ChooseLine(int line); ///< by a click

    GridCellMarks Marks(int row, int column);
    QString Tip(int row, int column);
    QString Description(int row, int column);

    // clang-format off
    const Bytes oven = WordBytes({105, 0x0000, 0x4020, 0x4241, 0x4443,   //  1.05 shown as 1.50, 2.5
                                   75, 0x51EC, 0x41C8, 0x4645, 0x4847,   //  0.75, 25.04 shown as 25.0
                                  200, 0x0000, 0x3FC0, 0x4A49, 0x4C4B,   //  2.00, 1.5
                                    5, 0x0000, 0x4040, 0x4E4D, 0x504F,   //  0.05 shown as 0.50, 3.0
                                  0xFFFF, 0x1234});                      //  after the rows
    // clang-format on
    /// What a save without an edit makes of it.
    const Bytes ovenAsShown = OvenWith({{0, 150}, {6, 0x0000}, {7, 0x41C8}, {15, 50}});

private:
    QList<QWidget*> ButtonsOfStrip();
};
