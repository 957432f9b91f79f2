#include "cli/TerminalProgress.h"

#include "disk/File.h"

#include <algorithm>
#include <string>

namespace {

std::string PercentText(std::uint64_t done, std::uint64_t total)
{
    const double part = static_cast<double>(done) / static_cast<double>(std::max<std::uint64_t>(total, 1));
    const std::string digits = std::to_string(static_cast<int>(100 * std::min(part, 1.0)));
    return std::string(3 - digits.size(), ' ') + digits + " %";
}

} // namespace

CTerminalProgress::CTerminalProgress(std::FILE* stream, std::chrono::milliseconds delay,
                                     std::chrono::milliseconds interval)
    : m_stream(IsTerminal(stream) ? stream : nullptr),
      m_next(Clock::now() + delay),
      m_interval(interval)
{
}

bool CTerminalProgress::Advance(std::uint64_t done, std::uint64_t total)
{
    if (!m_stream || Clock::now() < m_next)
        return true;
    m_next = Clock::now() + m_interval;
    m_isShown = true;
    std::fprintf(m_stream, "\r%s", PercentText(done, total).c_str());
    std::fflush(m_stream);
    return true;
}

void CTerminalProgress::Erase()
{
    if (!m_isShown)
        return;
    m_isShown = false;
    std::fputs("\r     \r", m_stream);
    std::fflush(m_stream);
}
