#include "tests/faults/FaultRun.h"

#include "tests/support/TestFiles.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <string_view>

namespace fs = std::filesystem;

bool Fault::Kills() const
{
    return std::string_view(kind) == "kill";
}

bool Fault::IsPassing() const
{
    return std::string_view(kind) == "short" || error == EINTR;
}

bool Fault::TearsWrites() const
{
    return std::string_view(kind) == "break";
}

const std::vector<Fault>& AllFaults()
{
    static const std::vector<Fault> faults = {
        {"no space once", "error", ENOSPC},
        {"no space", "error", ENOSPC, 0},
        {"input/output error once", "error", EIO},
        {"input/output error", "error", EIO, 0},
        {"interrupted", "error", EINTR, 3},
        {"short write", "short"},
        {"short writes", "short", 0, 0},
        {"short write, then no space", "break", ENOSPC},
        {"short write, then input/output error", "break", EIO},
        {"no byte taken", "none"},
        {"killed", "kill"},
    };
    return faults;
}

bool FaultRun::HasFailed(const std::string& call) const
{
    return std::find(failed.begin(), failed.end(), call) != failed.end();
}

FaultRun RunWithFault(const fs::path& program, const std::vector<std::string>& arguments, const fs::path& folder,
                      const Fault& fault, int at, const std::vector<std::string>& environment)
{
    const CTempFolder place;
    const char* sanitizer = std::getenv("ASAN_OPTIONS");
    FaultRun run;
    std::vector<std::string> settings = {
        std::string("LD_PRELOAD=") + VANTOR_FAULT_SHIM,
        "VANTOR_FAULT_FOLDER=" + folder.string() + "/",
        "VANTOR_FAULT_LOG=" + (place / "log").string(),
        "VANTOR_FAULT_AT=" + std::to_string(at),
        "VANTOR_FAULT_TIMES=" + std::to_string(fault.times),
        "VANTOR_FAULT_ERROR=" + std::to_string(fault.error),
        std::string("VANTOR_FAULT_KIND=") + fault.kind,
        std::string("ASAN_OPTIONS=") + (sanitizer ? sanitizer : "") + ":verify_asan_link_order=0",
    };
    settings.insert(settings.end(), environment.begin(), environment.end());
    run.result = RunProcessIn(settings, program, arguments);
    std::ifstream log(place / "log");
    for (std::string line; std::getline(log, line);) {
        const bool fails = line.ends_with('!');
        run.calls.push_back(fails ? line.substr(0, line.size() - 1) : line);
        if (fails)
            run.failed.push_back(run.calls.back());
    }
    return run;
}
