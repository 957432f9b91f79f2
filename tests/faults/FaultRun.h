#pragma once

#include "tests/support/ProcessRun.h"

#include <filesystem>
#include <ostream>
#include <string>
#include <vector>

/// A way in which a call that writes goes wrong; FaultShim.cpp says what the fields are.
struct Fault {
    const char* name;
    const char* kind;
    int error = 0;
    int times = 1; ///< 0: from then on

    friend void PrintTo(const Fault& fault, std::ostream* out) { *out << fault.name; }

    bool Kills() const;
    bool IsPassing() const;   ///< to be tried again or carried on with: no failure for a save
    bool TearsWrites() const; ///< a write may have taken a part of its bytes for good
};

/// All faults that are tried at each call.
const std::vector<Fault>& AllFaults();

/// What a program did while its disk was broken.
struct FaultRun {
    ProcessResult result;
    std::vector<std::string> calls;  ///< that write to the folder, in order
    std::vector<std::string> failed; ///< those of them that were made to fail

    bool HasFailed(const std::string& call) const;
};

/// Runs `program`; in `folder` the call number `at`, counted from 1, goes wrong as `fault` says, with 0 none does. What
/// is kept beside the files has faults of its own: no earlier versions are, unless `environment` says otherwise.
FaultRun RunWithFault(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                      const std::filesystem::path& folder, const Fault& fault, int at,
                      const std::vector<std::string>& environment = {"VANTOR_VERSIONS=off"});
