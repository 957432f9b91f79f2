#pragma once

#include "text/Reporter.h"
#include "text/Utf8Text.h"

#include <cstdio>
#include <cstdlib>
#include <string>

// What the programs whose disk breaks have in common.

class CErrorPrinter final : public CReporter {
public:
    void ShowError(std::u16string_view text) override { std::fprintf(stderr, "%s\n", ToUtf8(text).c_str()); }
    bool AskYesNo(std::u16string_view) override { return false; }
};

/// While it lives, the disk does not break.
class CSoundDisk {
public:
    CSoundDisk()
    {
        if (const char* folder = std::getenv(kFolder))
            m_folder = folder;
        unsetenv(kFolder);
    }
    ~CSoundDisk() { setenv(kFolder, m_folder.c_str(), 1); }
    CSoundDisk(const CSoundDisk&) = delete;
    CSoundDisk& operator=(const CSoundDisk&) = delete;

private:
    static constexpr const char* kFolder = "VANTOR_FAULT_FOLDER";
    std::string m_folder;
};
