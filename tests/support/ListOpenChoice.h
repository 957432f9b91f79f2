#pragma once

#include <QObject>
#include <QString>
#include <QTimer>

/// Answers the next file dialog like somebody who types a name in its folder and presses Return while the list of
/// completions is open, and watches the list.
class CListOpenChoice final : public QObject {
public:
    explicit CListOpenChoice(const QString& name);

    bool WasListOpen() const { return m_bReturned; }            ///< when Return was pressed
    bool ClosedListFirst() const { return m_bClosedListFirst; } ///< no list was open when the dialog went

private:
    void Look();
    bool eventFilter(QObject* watched, QEvent* event) override;

    QString m_strName;
    QTimer m_timer;
    int m_nLooks = 0;
    bool m_bTyped = false;
    bool m_bReturned = false;
    bool m_bClosedListFirst = false;
};
