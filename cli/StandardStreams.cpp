#include "cli/StandardStreams.h"

#include "text/Utf8Text.h"

#include <cstddef>

namespace {

constexpr std::size_t kPieceBytes = std::size_t{1} << 20;

}

void CStandardError::ShowError(std::u16string_view text)
{
    const std::string line = ToUtf8(text) + '\n';
    std::fwrite(line.data(), 1, line.size(), m_stream);
}

bool CStandardError::AskYesNo(std::u16string_view text)
{
    ShowError(text);
    return false;
}

void CStandardOutput::Write(std::string_view text)
{
    m_piece += text;
    if (m_piece.size() >= kPieceBytes)
        WritePiece();
}

bool CStandardOutput::Finish(CReporter& reporter)
{
    WritePiece();
    if (std::fflush(m_stream) == 0 && !m_failed)
        return true;
    reporter.ShowError(u"Can't write the output!");
    return false;
}

void CStandardOutput::WritePiece()
{
    m_failed = m_failed || std::fwrite(m_piece.data(), 1, m_piece.size(), m_stream) != m_piece.size();
    m_piece.clear();
}
