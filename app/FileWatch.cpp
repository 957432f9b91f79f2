#include "app/FileWatch.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QSet>

#include <algorithm>

namespace {

constexpr int kShortestPause = 150;  // milliseconds: a program writes more than once
constexpr int kLongestPause = 10000; // milliseconds
constexpr int kPart = 20;            // of the time that passes, which the answers may take

} // namespace

CFileWatch::CFileWatch(QObject* parent) : QObject(parent)
{
    m_pause.setSingleShot(true);
    m_pause.setInterval(kShortestPause);
    connect(&m_pause, &QTimer::timeout, this, &CFileWatch::Prompt);
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, &CFileWatch::OnEvent);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &CFileWatch::OnEvent);
}

void CFileWatch::Watch(const QString& path)
{
    if (path == m_path)
        return;
    m_path = path;
    m_target.clear();
    m_pause.stop();
    m_pause.setInterval(kShortestPause);
    Forget();
    if (!m_path.isEmpty())
        m_pause.start();
}

void CFileWatch::Forget()
{
    const QStringList watched = m_watcher.files() + m_watcher.directories();
    if (!watched.isEmpty())
        m_watcher.removePaths(watched);
}

/// The folder does not tell of writes into the file, and the file is not heard of any more once another has its name:
/// both are taken up again each time.
void CFileWatch::TakeUp()
{
    if (m_path.isEmpty())
        return;
    Forget();
    const QFileInfo file(m_path);
    if (file.exists())
        m_target = file.canonicalFilePath(); // where a link leads, and led to while it had gone
    QSet<QString> paths{file.absolutePath(), m_target, QFileInfo(m_target).absolutePath()};
    paths.remove(QString());
    m_watcher.addPaths(paths.values());
}

void CFileWatch::OnEvent()
{
    if (!m_pause.isActive())
        m_pause.start();
}

void CFileWatch::Prompt()
{
    TakeUp();
    QElapsedTimer time;
    time.start();
    emit Prompted();
    m_pause.setInterval(std::clamp(static_cast<int>(time.elapsed()) * kPart, kShortestPause, kLongestPause));
}
