#pragma once

#include "cli/TerminalProgress.h"
#include "text/Reporter.h"

#include <cstdio>
#include <string>
#include <string_view>

/// Says on standard error what people must hear, a line a message. Nobody is there to answer a question: it counts as
/// answered with No. Takes the progress away first.
class CStandardError final : public CReporter {
public:
    CStandardError(std::FILE* stream, CTerminalProgress& progress) : m_stream(stream), m_progress(progress) {}

    void ShowError(std::u16string_view text) override;
    bool AskYesNo(std::u16string_view text) override;

private:
    std::FILE* m_stream;
    CTerminalProgress& m_progress;
};

/// Standard output in large pieces; on a terminal the progress is taken away before one.
class CStandardOutput {
public:
    CStandardOutput(std::FILE* stream, CTerminalProgress& progress) : m_stream(stream), m_progress(progress) {}

    void Write(std::string_view text);

    /// Whether some text could not be written: what comes now is for nobody, and work for it may end.
    bool HasFailed() const { return m_failed; }

    /// Hands out what is left. False when any of the text could not be written: reported for a full disk, for example,
    /// and not for a reader that has gone, who has seen enough.
    bool Finish(CReporter& reporter);

private:
    void WritePiece();
    void NoteFailure(int fault);

    std::FILE* m_stream;
    CTerminalProgress& m_progress;
    std::string m_piece;
    bool m_failed = false;
    bool m_isReaderGone = false;
};
