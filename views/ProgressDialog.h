#pragma once

#include "files/Progress.h"

#include <QElapsedTimer>
#include <QString>

#include <chrono>
#include <memory>

class QProgressDialog;
class QWidget;

/// Shows how far long work has come and lets the user cancel it. Nothing appears, and no event is handled, before the
/// work has taken `delay`; from then on the window repaints but takes no other input.
class CProgressDialog final : public CProgress {
public:
    CProgressDialog(QWidget& parent, QString label, std::chrono::milliseconds delay = std::chrono::milliseconds(500));
    ~CProgressDialog() override;

    bool Advance(std::uint64_t done, std::uint64_t total) override;

private:
    void Open();

    QWidget& m_parent;
    QString m_strLabel;
    std::chrono::milliseconds m_delay;
    QElapsedTimer m_elapsed;
    std::unique_ptr<QProgressDialog> m_pDialog;
    bool m_bCancelled = false;
};
