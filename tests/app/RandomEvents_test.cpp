#include "app/VantorApp.h"
#include "tests/app/RandomEvents.h"

#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <csignal>
#include <cstdio>
#include <mutex>
#include <pthread.h>
#include <sys/resource.h>
#include <thread>

namespace {

constexpr int kEventsOfAShortRun = 600;
constexpr std::chrono::seconds kLongestEvent{90}; // also with the sanitizers, on a busy machine
constexpr std::size_t kMostGrowth = 4 << 20;      // bytes of heap, from the first windows to the last
constexpr rlim_t kMostFileBytes = 64 << 20;       // a start address typed at random must not fill the disk

int EventsFromEnvironment()
{
    bool isNumber = false;
    const int events = qEnvironmentVariableIntValue("VANTOR_RANDOM_EVENTS", &isNumber);
    return isNumber ? events : kEventsOfAShortRun;
}

unsigned SeedFromEnvironment()
{
    bool isNumber = false;
    const int seed = qEnvironmentVariableIntValue("VANTOR_RANDOM_SEED", &isNumber);
    return isNumber ? static_cast<unsigned>(seed) : 1;
}

/// Ends the program, with the last events on standard error, when no event was done for kLongestEvent. The signal that
/// ends it goes to the thread that made this object, so that a sanitizer or a debugger shows where that one hangs.
class CWatchdog {
public:
    explicit CWatchdog(const CRandomEvents& events)
        : m_events(events),
          m_watched(pthread_self()),
          m_thread([this] { Watch(); })
    {
    }

    ~CWatchdog()
    {
        {
            const std::lock_guard lock(m_mutex);
            m_isOver = true;
        }
        m_over.notify_one();
        m_thread.join();
    }

private:
    void Watch()
    {
        std::unique_lock lock(m_mutex);
        int seen = -1;
        while (seen != m_events.EventsDone()) {
            seen = m_events.EventsDone();
            if (m_over.wait_for(lock, kLongestEvent, [this] { return m_isOver; }))
                return;
        }
        std::fprintf(stderr, "The window hangs: %s\n", m_events.Recent().c_str());
        pthread_kill(m_watched, SIGABRT);
    }

    const CRandomEvents& m_events;
    const pthread_t m_watched;
    std::mutex m_mutex;
    std::condition_variable m_over;
    bool m_isOver = false;
    std::thread m_thread;
};

/// Bytes, of a moment without a window; also printed.
std::size_t HeapAfter(CRandomEvents& events)
{
    const std::size_t heap = events.HeapBetweenWindows();
    std::printf("%d events, heap between two windows %zu KiB\n", events.EventsDone(), heap / 1024);
    std::fflush(stdout);
    return heap;
}

} // namespace

TEST(RandomEvents, NeitherCrashNorHangNorLeak)
{
    CRandomEvents events(SeedFromEnvironment());
    const CWatchdog watchdog(events);
    const int all = EventsFromEnvironment();
    const int warmUp = std::min(all / 5, 10000); // what the toolkit loads and keeps is there after that
    events.Run(warmUp);
    const std::size_t before = HeapAfter(events);
    constexpr int kParts = 4; // a leak would show in each alike
    for (int part = 1; part < kParts; ++part) {
        events.Run((all - warmUp) / kParts);
        HeapAfter(events);
    }
    events.Run(all - events.EventsDone());
    const std::size_t after = HeapAfter(events);
    EXPECT_LT(after, before + kMostGrowth);
}

int main(int argc, char** argv)
{
    const CTempFolder settings; // the toolkit's file dialogs keep the last folder among the user's own
    qputenv("XDG_CONFIG_HOME", QByteArray::fromStdString(settings.Path().string()));
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const rlimit limit{kMostFileBytes, kMostFileBytes};
    setrlimit(RLIMIT_FSIZE, &limit);
    std::signal(SIGXFSZ, SIG_IGN); // so that a write that is too far fails, as on a full disk
    testing::InitGoogleTest(&argc, argv);
    const CVantorApp application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false); // a window that the events close is opened again
    return RUN_ALL_TESTS();
}
