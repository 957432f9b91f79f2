#pragma once

#include <QFileSystemWatcher>
#include <QObject>
#include <QString>
#include <QTimer>

/// Hears when a file may have become another: of writes into it, and of its folder's when it is replaced, removed or
/// made again. Nothing runs while nothing happens there.
class CFileWatch final : public QObject {
    Q_OBJECT

public:
    explicit CFileWatch(QObject* parent = nullptr);

    /// Watches the file `path` in the place of another; nothing when it is empty. It need not exist.
    void Watch(const QString& path);

    /// Watches again what is there by now, if it had gone.
    void TakeUp();

signals:
    /// It may be another one: a moment after it began to be watched, and after things happened. Where many happen, they
    /// come in one, and the less often the longer the answer to this takes.
    void Prompted();

private:
    void Forget();
    void OnEvent();
    void Prompt();

    QFileSystemWatcher m_watcher;
    QTimer m_pause;
    QString m_path;
    QString m_target; ///< the file itself
};
