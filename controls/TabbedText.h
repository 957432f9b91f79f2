#pragma once

#include <QString>
#include <QStringView>

/// Tab-separated text as spreadsheets exchange it through the clipboard: a field that holds a tab, a line end or a
/// quote stands in quotes, a quote inside it doubled.
void AppendTabbedField(QString& out, QStringView text);

/// Reads such a text field by field. A line end after the last row does not begin another row; a quote that is never
/// closed is an ordinary character.
class CTabbedTextReader {
public:
    /// `text` outlives the reader.
    explicit CTabbedTextReader(QStringView text) : m_text(text) {}

    bool Next(QString& field);               ///< false at the end; `field` is reused
    int Row() const { return m_nRow; }       ///< of the field last read, from 0
    int Column() const { return m_nColumn; } ///< likewise

private:
    bool ReadQuoted(QString& field);
    void ReadPlain(QString& field);
    void PassSeparator();

    QStringView m_text;
    qsizetype m_nPos = 0;
    int m_nRow = 0;
    int m_nColumn = -1;
    bool m_bRowEnded = false;
    bool m_bMore = true;      ///< a field follows, even an empty one at the end
    bool m_bUnclosed = false; ///< an unclosed quote was met: no later one is closed either
};
