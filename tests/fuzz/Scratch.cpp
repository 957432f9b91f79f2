#include "tests/fuzz/Scratch.h"

#include "disk/File.h"

#include <cstring>

const std::filesystem::path& ScratchFolder()
{
    static const CTempFolder folder;
    return folder.Path();
}

void PutFile(const std::filesystem::path& path, FuzzBytes bytes)
{
    CFile file(path, CFile::Mode::Truncate);
    if (!file.WriteAt(0, bytes))
        throw std::runtime_error("cannot write " + path.string());
}

Bytes FileContent(const std::filesystem::path& path)
{
    const CFile file(path, CFile::Mode::Read);
    Bytes bytes(static_cast<std::size_t>(file.Size().value_or(0)));
    bytes.resize(file.ReadAt(0, bytes).value_or(0));
    return bytes;
}

bool AreSame(FuzzBytes one, FuzzBytes other)
{
    return one.size() == other.size() && (one.empty() || std::memcmp(one.data(), other.data(), one.size()) == 0);
}
