#include "process/shared_meter.h"

#include <cerrno>
#include <chrono>
#include <memory>
#include <pthread.h>
#include <sys/mman.h>
#include <system_error>
#include <thread>

namespace vmeter {

struct SharedMeter::Memory {
    pthread_mutex_t mutex;
    std::atomic<uint32_t> current; // which of the two states counts; a call works on the other one
    State states[2];
};

static_assert(std::atomic<uint32_t>::is_always_lock_free && std::atomic<int64_t>::is_always_lock_free);

class SharedMeter::Lock {
public:
    // `take` is pthread_mutex_lock() or pthread_mutex_trylock().
    explicit Lock(Memory& memory, int (*take)(pthread_mutex_t*) = pthread_mutex_lock)
        : m_mutex(memory.mutex), m_error(take(&m_mutex))
    {
        // Its last owner died with it: the state that counts is whole all the same.
        if (m_error == EOWNERDEAD)
            pthread_mutex_consistent(&m_mutex);
    }
    ~Lock()
    {
        if (isTaken())
            pthread_mutex_unlock(&m_mutex);
    }
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

    bool isTaken() const { return m_error == 0 || m_error == EOWNERDEAD; }

private:
    pthread_mutex_t& m_mutex;
    int m_error;
};

SharedMeter::SharedMeter(std::size_t services, std::size_t faultRules)
    : m_size(sizeof(Memory) + alignof(std::max_align_t) + services * sizeof(std::atomic<int64_t>) +
             faultRules * sizeof(std::atomic<uint32_t>)),
      m_faultRules(faultRules)
{
    void* const memory = mmap(nullptr, m_size, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED)
        throw std::system_error(errno, std::generic_category(), "shared memory");

    m_memory = new (memory) Memory{};
    void* rest = m_memory + 1;
    std::size_t space = m_size - sizeof(Memory);
    std::align(alignof(std::atomic<int64_t>), services * sizeof(std::atomic<int64_t>), rest, space);
    m_comeBackMs = new (rest) std::atomic<int64_t>[services];
    for (std::size_t i = 0; i < services; ++i)
        m_comeBackMs[i] = -1;
    m_faultCounts = new (m_comeBackMs + services) std::atomic<uint32_t>[faultRules] {};

    pthread_mutexattr_t attributes;
    pthread_mutexattr_init(&attributes);
    pthread_mutexattr_setpshared(&attributes, PTHREAD_PROCESS_SHARED);
    pthread_mutexattr_setrobust(&attributes, PTHREAD_MUTEX_ROBUST);
    pthread_mutex_init(&m_memory->mutex, &attributes);
    pthread_mutexattr_destroy(&attributes);
}

SharedMeter::~SharedMeter()
{
    munmap(m_memory, m_size);
}

uint64_t SharedMeter::update(const std::function<void(State&)>& change)
{
    const Lock lock(*m_memory);
    const uint32_t current = m_memory->current;
    State& next = m_memory->states[1 - current];
    next = m_memory->states[current];
    change(next);
    m_memory->current = 1 - current;
    return next.ulSimMs;
}

State SharedMeter::state()
{
    const Lock lock(*m_memory);
    return m_memory->states[m_memory->current];
}

std::optional<State> SharedMeter::stateInTime()
{
    for (int tries = 0; tries < 100; ++tries) {
        if (const Lock lock(*m_memory, pthread_mutex_trylock); lock.isTaken())
            return m_memory->states[m_memory->current];
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return std::nullopt;
}

uint64_t SharedMeter::simMs()
{
    const Lock lock(*m_memory);
    return m_memory->states[m_memory->current].ulSimMs;
}

std::span<std::atomic<uint32_t>> SharedMeter::faultCounts()
{
    return {m_faultCounts, m_faultRules};
}

std::atomic<int64_t>& SharedMeter::comeBackMs(std::size_t service)
{
    return m_comeBackMs[service];
}

} // namespace vmeter
