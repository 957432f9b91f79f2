// vantor-sheet ARGUMENTS: what vantor-cli does with them, and PDF of sheets besides.

#include "cli/CommandLine.h"
#include "disk/File.h"
#include "disk/Program.h"
#include "print/QtSheetPdf.h"

#include <QGuiApplication>

#include <cstdio>

int main(int argc, char* argv[])
{
    SurviveFailedWrites();
    UseStreamsForBytes();
    qputenv("QT_QPA_PLATFORM", VANTOR_PAGE_PLATFORM);
    qputenv("QT_LOGGING_RULES", "default.warning=false;qt.qpa.*=false"); // of what that one lacks
    int toolkitArguments = 1; // those that there are belong to the command line
    const QGuiApplication app(toolkitArguments, argv);
    CQtSheetPdf pdf;
    return RunCommandLine(ProgramArguments(argc, argv), stdout, stderr, &pdf);
}
