#include "views/ProgressDialog.h"

#include <QCoreApplication>
#include <QProgressBar>
#include <QProgressDialog>

namespace {

constexpr int kSteps = 1000; // the dialog counts in int; the work may count bytes beyond that

} // namespace

CProgressDialog::CProgressDialog(QWidget& parent, QString label, std::chrono::milliseconds delay)
    : m_parent(parent),
      m_strLabel(std::move(label)),
      m_delay(delay)
{
    m_elapsed.start();
}

CProgressDialog::~CProgressDialog() = default;

void CProgressDialog::Open()
{
    m_pDialog = std::make_unique<QProgressDialog>(m_strLabel, QObject::tr("Cancel"), 0, kSteps, &m_parent);
    m_pDialog->setWindowTitle(QCoreApplication::applicationName());
    m_pDialog->setWindowModality(Qt::ApplicationModal);
    m_pDialog->setAutoClose(false); // the dialog goes with this object, not at 100 percent
    m_pDialog->setAutoReset(false);
    m_pDialog->setMinimumDuration(0);
    m_pDialog->findChild<QProgressBar*>()->setAccessibleName(m_strLabel);
    m_pDialog->show();
}

bool CProgressDialog::Advance(std::uint64_t done, std::uint64_t total)
{
    if (m_bCancelled)
        return false;
    if (!m_pDialog) {
        if (!m_elapsed.hasExpired(m_delay.count()))
            return true;
        Open();
    }
    const double share = total == 0 ? 1.0 : static_cast<double>(done) / static_cast<double>(total);
    m_pDialog->setValue(static_cast<int>(share * kSteps));
    QCoreApplication::processEvents();
    m_bCancelled = m_pDialog->wasCanceled();
    return !m_bCancelled;
}
