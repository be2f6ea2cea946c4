#pragma once

// Locking for the short critical sections of the worker pool.

#include <mutex>
#include <thread>

namespace tarnfold::zmf {

inline void cpuRelax() {
#if defined(__x86_64__) || defined(__i386__)
    __builtin_ia32_pause();
#else
    std::this_thread::yield();
#endif
}

// The reader lock is held for the scan of one game's text, a few
// microseconds. A worker that finds it taken does better to try again for
// about that long than to sleep in the kernel and wait to be woken, which
// costs more than the scan itself and left a core idle for a second of a
// two-thread run over 200,000 games.
inline std::unique_lock<std::mutex> lockBriefly(std::mutex& mutex) {
    constexpr int kTries = 2000;
    for (int attempt = 0; attempt < kTries; ++attempt) {
        if (mutex.try_lock()) return std::unique_lock<std::mutex>(mutex, std::adopt_lock);
        cpuRelax();
    }
    return std::unique_lock<std::mutex>(mutex);
}

}  // namespace tarnfold::zmf
