#pragma once

#include <QItemSelection>
#include <QStringView>

#include <cstdint>

class CGridEdits;
class CGridModel;
class CSlowWork;
class QWidget;

/// The clipboard commands on the chosen cells of a grid. Texts go out and come in as tab-separated text. No cell is
/// changed here: what a command gives the cells goes into its edits. Over `window` a long one shows how far it is and
/// can be cancelled; it also ends when the grid is reset meanwhile.
class CGridClipboard {
public:
    /// The model and the window outlive the object.
    CGridClipboard(const CGridModel& model, const QItemSelection& chosen, QWidget& window)
        : m_model(model),
          m_chosen(chosen),
          m_window(window)
    {
    }

    /// Of several ranges: the rows and columns that hold a chosen cell, with empty fields where a cell is not chosen.
    /// False when nothing is chosen or it was given up; the clipboard is then as before.
    bool Copy();
    bool Clear(CGridEdits& edits);                   ///< empties the chosen cells; false when it was given up
    bool Paste(QStringView text, CGridEdits& edits); ///< false when it was given up

private:
    bool Fill(const QString& text, const QString& label, CGridEdits& edits);
    bool FillRange(const QItemSelectionRange& range, const QString& text, CSlowWork& work, std::int64_t& rowsDone,
                   CGridEdits& edits);
    bool PasteBlock(QStringView text, CGridEdits& edits);
    bool GoesOn(CSlowWork& work, std::int64_t done) const;

    const CGridModel& m_model;
    QItemSelection m_chosen;
    QWidget& m_window;
};
