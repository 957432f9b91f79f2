#pragma once

#include <QItemSelection>
#include <QString>
#include <QStringView>

#include <cstdint>
#include <functional>

class CGridEdits;
class CGridModel;
class CSlowWork;
class QWidget;

/// How cells are copied.
struct GridCopyForm {
    bool hasTitles = false;                              ///< the columns' titles are the first line
    std::function<void(int column, QString& text)> edit; ///< of each cell, by its grid column; none: as it stands
};

/// What did not fit below and right of the cell where a paste began.
struct GridPasteRest {
    int rows = 0;
    int columns = 0;
};

/// "16 rows and 2 columns did not fit."; empty where all fit.
QString NotFittingText(const GridPasteRest& rest);

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
    bool Copy(const GridCopyForm& form = {});
    bool Clear(CGridEdits& edits);                   ///< empties the chosen cells; false when it was given up
    bool Paste(QStringView text, CGridEdits& edits); ///< false when it was given up
    GridPasteRest Rest() const { return m_rest; }    ///< of Paste

private:
    bool Fill(const QString& text, const QString& label, CGridEdits& edits);
    bool FillRange(const QItemSelectionRange& range, const QString& text, CSlowWork& work, std::int64_t& rowsDone,
                   CGridEdits& edits);
    bool PasteBlock(QStringView text, CGridEdits& edits);
    bool GoesOn(CSlowWork& work, std::int64_t done) const;

    const CGridModel& m_model;
    QItemSelection m_chosen;
    QWidget& m_window;
    GridPasteRest m_rest;
};
