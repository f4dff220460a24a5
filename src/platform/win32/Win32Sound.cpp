#include "platform/win32/Win32Sound.h"

#include <windows.h>

// After windows.h.
#include <mmsystem.h>

#include <algorithm>

#include "base/errors.h"

namespace tb {

Win32Sound::~Win32Sound() {
    if (!m_Waves.empty()) sndPlaySoundW(nullptr, 0);
}

void Win32Sound::Play(const std::shared_ptr<const Text>& wave, std::uint32_t flags) noexcept {
    if (!wave || wave->empty()) return;
    Trap(
        [&] {
            if (std::find(m_Waves.begin(), m_Waves.end(), wave) == m_Waves.end()) m_Waves.push_back(wave);
            // Bytes in memory, whatever the type says.
            sndPlaySoundW(reinterpret_cast<const wchar_t*>(wave->data()), flags);
        },
        [](const RuntimeError&) { /* no memory to keep it: not played */ });
}

}  // namespace tb
