#pragma once

#include <QTextEdit>

/// A message in a box, which can be read and selected. A line ends between words where it can, else between any two
/// characters: a path may have no blanks. What is selected is copied exactly as it was given.
class CMessageLabel final : public QTextEdit {
    Q_OBJECT

public:
    /// Takes no more room than `text` needs, at most the room of `most`. It scrolls when that is too little.
    CMessageLabel(const QString& text, QSize most, QWidget* parent);

    const QString& Message() const { return m_strText; }

protected:
    QMimeData* createMimeDataFromSelection() const override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void Fit(QSize most);

    QString m_strText;
};
