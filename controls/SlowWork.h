#pragma once

#include <QElapsedTimer>
#include <QPointer>
#include <QProgressDialog>

#include <chrono>
#include <cstdint>

/// Work that may take long. Once it has taken longer than `patience`, a dialog shows how far it is and lets the user
/// cancel it.
class CSlowWork {
public:
    CSlowWork(QWidget* parent, const QString& label, std::int64_t steps,
              std::chrono::milliseconds patience = std::chrono::seconds(1));
    ~CSlowWork();
    CSlowWork(const CSlowWork&) = delete;
    CSlowWork& operator=(const CSlowWork&) = delete;

    bool Step(std::int64_t done); ///< `done` of the steps are done. False when the user has cancelled.

private:
    void Open();

    QPointer<QWidget> m_pParent;
    QString m_strLabel;
    std::int64_t m_nSteps;
    std::chrono::milliseconds m_patience;
    QElapsedTimer m_time;
    qint64 m_nShown = 0; ///< when the dialog last showed the progress, in ms
    QPointer<QProgressDialog> m_pDialog;
};
