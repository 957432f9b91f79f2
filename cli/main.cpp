#include "cli/CommandLine.h"
#include "cli/StandardStreams.h"
#include "disk/File.h"

int main(int argc, char* argv[])
{
    SurviveFailedWrites();
    return RunCommandLine(argc, argv, stdout, stderr);
}
