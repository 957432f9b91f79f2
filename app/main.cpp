#include "app/VantorApp.h"
#include "disk/File.h"

int main(int argc, char* argv[])
{
    SurviveFailedWrites();
    CVantorApp app(argc, argv);
    app.InitInstance();
    return CVantorApp::exec();
}
