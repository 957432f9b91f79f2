#include "app/VantorApp.h"

int main(int argc, char* argv[])
{
    CVantorApp app(argc, argv);
    app.InitInstance();
    return CVantorApp::exec();
}
