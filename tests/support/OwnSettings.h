#pragma once

#include <QTemporaryDir>

/// A folder of the program's own for what the toolkit keeps between runs, such as the sizes of its file dialogs: tests
/// meet neither the user's nor those of another suite that runs beside them. It goes with the object.
class COwnSettings {
public:
    COwnSettings() { qputenv("XDG_CONFIG_HOME", m_folder.path().toLocal8Bit()); }

private:
    QTemporaryDir m_folder;
};
