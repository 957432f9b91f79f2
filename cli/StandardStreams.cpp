#include "cli/StandardStreams.h"

#include "disk/File.h"
#include "text/Utf8Text.h"

#include <cerrno>
#include <cstddef>

namespace {

constexpr std::size_t kPieceBytes = std::size_t{1} << 20;

}

void CStandardError::ShowError(std::u16string_view text)
{
    m_progress.Erase();
    WriteText(m_stream, ToUtf8(text) + '\n');
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
    errno = 0;
    if (std::fflush(m_stream) != 0)
        NoteFailure(errno);
    if (m_failed && !m_isReaderGone)
        reporter.ShowError(u"Can't write the output!");
    return !m_failed;
}

/// Once something was lost, the rest is of no use.
void CStandardOutput::WritePiece()
{
    if (!m_failed) {
        m_progress.Erase();
        errno = 0;
        if (!WriteText(m_stream, m_piece))
            NoteFailure(errno);
    }
    m_piece.clear();
}

void CStandardOutput::NoteFailure(int fault)
{
    m_isReaderGone = m_isReaderGone || (!m_failed && fault == EPIPE);
    m_failed = true;
}
