// Prefetching of memory that is wanted soon.
#pragma once

namespace tb {

// g++ takes a function that does nothing else for one without an effect and drops its calls; the empty instruction with
// an unknown effect keeps them.
inline void PrefetchMemory(const void* at) {
    __builtin_prefetch(at);
    __asm__ volatile("");
}

}  // namespace tb
