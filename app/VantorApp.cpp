#include "app/VantorApp.h"

#include "app/MainFrame.h"
#include "app/Skin.h"
#include "disk/File.h"
#include "recovery/DataFolder.h"

#include <QTimer>

CVantorApp::CVantorApp(int& argc, char** argv) : QApplication(argc, argv)
{
    SetUp();
}

CVantorApp::~CVantorApp() = default;

void CVantorApp::SetUp()
{
    Q_INIT_RESOURCE(vantor); // the linker would leave them in their library
    setApplicationName(QStringLiteral("Vantor"));
    setApplicationVersion(QStringLiteral("1.6"));
    setOrganizationName(QStringLiteral("VantorTool")); // the settings key; nothing is kept there so far
    setDesktopFileName(QStringLiteral("org.vantor.Vantor"));
    setStyle(new CSkin);
}

void CVantorApp::InitInstance()
{
    m_pFrame = std::make_unique<CMainFrame>(ExecutablePath());
    m_pFrame->showMaximized();
    QTimer::singleShot(0, m_pFrame.get(), [this] { m_pFrame->KeepIn(OwnDataFolder()); });
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() > 1) // once the window is up: a message about the file must have a window to stand over
        QTimer::singleShot(0, m_pFrame.get(), [this, path = arguments.at(1)] { m_pFrame->OpenPath(path); });
}
