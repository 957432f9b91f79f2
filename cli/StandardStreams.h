#pragma once

#include "text/Reporter.h"

#include <cstdio>
#include <string>
#include <string_view>

/// Says on standard error what people must hear, a line a message. Nobody is there to answer a question: it counts as
/// answered with No.
class CStandardError final : public CReporter {
public:
    explicit CStandardError(std::FILE* stream) : m_stream(stream) {}

    void ShowError(std::u16string_view text) override;
    bool AskYesNo(std::u16string_view text) override;

private:
    std::FILE* m_stream;
};

/// Standard output in large pieces.
class CStandardOutput {
public:
    explicit CStandardOutput(std::FILE* stream) : m_stream(stream) {}

    void Write(std::string_view text);

    /// Hands out what is left. False, and then reported, when any of the text could not be written: a full disk, a
    /// reader that has gone.
    bool Finish(CReporter& reporter);

private:
    void WritePiece();

    std::FILE* m_stream;
    std::string m_piece;
    bool m_failed = false;
};
