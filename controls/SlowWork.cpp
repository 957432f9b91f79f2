#include "controls/SlowWork.h"

#include <QApplication>
#include <QProgressBar>

namespace {

constexpr int kScale = 1000;
constexpr qint64 kShowEvery = 50; // ms

} // namespace

CSlowWork::CSlowWork(QWidget* parent, const QString& label, std::int64_t steps, std::chrono::milliseconds patience)
    : m_pParent(parent),
      m_strLabel(label),
      m_nSteps(steps),
      m_patience(patience)
{
    m_time.start();
}

CSlowWork::~CSlowWork()
{
    delete m_pDialog;
}

bool CSlowWork::Step(std::int64_t done)
{
    const qint64 elapsed = m_time.elapsed();
    if (elapsed < m_patience.count() || elapsed < m_nShown + kShowEvery)
        return true;
    m_nShown = elapsed;
    if (!m_pDialog)
        Open();
    m_pDialog->setValue(m_nSteps > 0 ? static_cast<int>(done * kScale / m_nSteps) : 0);
    QCoreApplication::processEvents(); // for Cancel; the dialog itself does it with another value only
    return m_pDialog && !m_pDialog->wasCanceled();
}

void CSlowWork::Open()
{
    m_pDialog = new QProgressDialog(m_strLabel, QStringLiteral("Cancel"), 0, kScale, m_pParent);
    m_pDialog->setWindowTitle(QApplication::applicationDisplayName());
    m_pDialog->setWindowModality(Qt::ApplicationModal);
    m_pDialog->setMinimumDuration(0);
    m_pDialog->findChild<QProgressBar*>()->setAccessibleName(m_strLabel);
    m_pDialog->setAutoClose(false);
    m_pDialog->setAutoReset(false);
    m_pDialog->show();
}
