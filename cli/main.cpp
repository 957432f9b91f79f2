#include "cli/CommandLine.h"
#include "cli/StandardStreams.h"
#include "disk/File.h"
#include "disk/Program.h"

int main(int argc, char* argv[])
{
    SurviveFailedWrites();
    UseStreamsForBytes();
    return RunCommandLine(ProgramArguments(argc, argv), stdout, stderr);
}
