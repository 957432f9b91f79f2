#include <cstdio>
#include <windows.h>

// Opens the file that is named for nobody else, as some programs do, says so, and keeps it until it is ended.

int wmain(int argc, wchar_t* argv[])
{
    if (argc != 2 || CreateFileW(argv[1], GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr) == INVALID_HANDLE_VALUE)
        return 1;
    std::puts("held");
    std::fflush(stdout);
    Sleep(INFINITE);
    return 0;
}
