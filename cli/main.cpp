#include "cli/CommandLine.h"
#include "cli/StandardStreams.h"
#include "disk/File.h"
#include "disk/Program.h"

int main(int argc, char* argv[])
{
    SurviveFailedWrites();
    return RunCommandLine(ProgramArguments(argc, argv), stdout, stderr);
}
