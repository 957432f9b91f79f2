#pragma once

#include <QLineEdit>

/// What the end of an edit leaves: the cell, the text it is to show, and the key that ended the edit (0: no key).
struct EditEnd {
    int row = 0;
    int column = 0;
    QString text;
    int key = 0;
};

/// Whom an in-place editor works for.
class CInPlaceEditOwner {
public:
    virtual bool AcceptsText(int column, const QString& text) = 0;
    virtual void ReportRefusal(int row, int column) = 0; ///< returns when the user has answered
    virtual void MarkEdited(int row, int column) = 0;    ///< an accepted text differs from the one before
    virtual void TakeEdit(const EditEnd& end) = 0;       ///< takes the text into the cell and closes the editor
    virtual void TakeForChosen(const EditEnd& end) = 0;  ///< closes the editor; the text is for all chosen cells

protected:
    ~CInPlaceEditOwner() = default;
};

/// The editor over a cell of the grid. It ends once, by whatever comes first: an ending key, the loss of the focus or
/// End. Ctrl+Enter ends it with a text for all chosen cells, which nobody has checked then.
class CInPlaceEdit final : public QLineEdit {
    Q_OBJECT

public:
    static constexpr int kControlId = 8;

    CInPlaceEdit(CInPlaceEditOwner& owner, QWidget* parent, int row, int column, const QString& text);

    int Row() const { return m_nRow; }
    int Column() const { return m_nColumn; }

    /// Ends the edit as `key` does (0: no key). False when the text was refused, or an end is already running.
    bool End(int key);
    /// Takes the editor away without ending the edit. `heir` gets the focus when the editor has it.
    void Close(QWidget* heir);

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void FocusMoved(const QWidget* from, const QWidget* to);
    void EndForChosen();
    void Leave(bool isByMouse);

    CInPlaceEditOwner& m_owner;
    int m_nRow;
    int m_nColumn;
    QString m_strOldText;
    bool m_bEnding = false;
    bool m_bClosed = false;
};
