// vantor-picture FILE OUT [WIDTH HEIGHT]: the window with FILE open, as a picture; nothing is shown.

#include "app/MainFrame.h"
#include "app/VantorApp.h"
#include "disk/File.h"

#include <QMessageBox>
#include <QPixmap>
#include <QTimer>

#include <chrono>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr QSize kUsualSize{1280, 800};

void PrintMessageAndExit()
{
    if (const auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
        std::fprintf(stderr, "%s\n", qPrintable(box->text()));
        std::exit(1);
    }
}

} // namespace

int main(int argc, char* argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const CVantorApp app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3 && arguments.size() != 5) {
        std::fputs("Usage: vantor-picture FILE OUT [WIDTH HEIGHT]\n", stderr);
        return 2;
    }
    CMainFrame frame(ExecutablePath());
    frame.resize(arguments.size() == 5 ? QSize(arguments.at(3).toInt(), arguments.at(4).toInt()) : kUsualSize);
    frame.show();
    QTimer messages; // nobody can answer one here
    QObject::connect(&messages, &QTimer::timeout, &PrintMessageAndExit);
    messages.start(std::chrono::milliseconds(50));
    frame.OpenPath(arguments.at(1));
    QCoreApplication::processEvents();
    if (frame.grab().save(arguments.at(2)))
        return 0;
    std::fprintf(stderr, "Can't write %s\n", qPrintable(arguments.at(2)));
    return 1;
}
