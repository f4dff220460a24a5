#include "urlcheck/sounds/Sounds.h"

#include "urlcheck/sounds/WaveFile.h"

namespace tb {

namespace {

constexpr std::uint32_t Flags =
    SoundFlag::Async | SoundFlag::NoDefault | SoundFlag::Memory | SoundFlag::NoStop | SoundFlag::NoWait;

std::shared_ptr<const Text> Wave(Text bytes) {
    return IsWaveFile(bytes) ? std::make_shared<const Text>(std::move(bytes)) : nullptr;
}

}  // namespace

Sounds::Sounds(Sound& device, Text click, Text alert)
    : m_Device(device), m_Click(Wave(std::move(click))), m_Alert(Wave(std::move(alert))) {}

void Sounds::PlayClickSound(bool play) noexcept {
    if (play && m_Click) m_Device.Play(m_Click, Flags);
}

void Sounds::PlayAlertSound(bool play) noexcept {
    if (play && m_Alert) m_Device.Play(m_Alert, Flags);
}

}  // namespace tb
