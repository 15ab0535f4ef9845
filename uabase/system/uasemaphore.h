#pragma once

#include <condition_variable>
#include <mutex>

/// Counts permits. Any thread may take or give them.
class UaSemaphore
{
public:
    /// Starts with initial permits and never holds more than maximum.
    UaSemaphore(unsigned int initial, unsigned int maximum);
    UaSemaphore(const UaSemaphore&) = delete;
    UaSemaphore& operator=(const UaSemaphore&) = delete;

    /// Takes one permit, waiting for it as long as need be.
    void wait();
    /// Takes one permit if it comes within the time; false when it did not.
    [[nodiscard]] bool timedWait(unsigned int milliseconds);
    /// Takes one permit if one is there.
    [[nodiscard]] bool tryWait();
    /// Gives permits back; false, and nothing given, when that would pass the maximum.
    bool post(unsigned int count = 1);

private:
    std::mutex m_mutex;
    std::condition_variable m_given;
    unsigned int m_permits;
    const unsigned int m_maximum;
};
