// Lets the machine fetch the memory that is wanted soon, while it does something else.
#pragma once

namespace tb {

// g++ takes a function that does nothing else for one without an effect and drops its calls; the empty instruction with
// an unknown effect keeps them.
inline void AskForMemory(const void* at) {
    __builtin_prefetch(at);
    __asm__ volatile("");
}

}  // namespace tb
