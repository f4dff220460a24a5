// The icon in the notification area.
#pragma once

#include <cstdint>

#include "base/text.h"
#include "platform/WindowText.h"

namespace tb {

// The number by which the shell knows the icon; its callbacks carry it as their first parameter.
inline constexpr std::uint32_t TrayIconId = 1;
// The callback's message: that of a mouse move, whose second parameter is then the mouse or balloon message.
inline constexpr std::uint32_t TrayIconMessage = 512;

// Which fields of the record count.
namespace NotifyIconFlag {
inline constexpr std::uint32_t Message = 1;
inline constexpr std::uint32_t Icon = 2;
inline constexpr std::uint32_t Tip = 4;
inline constexpr std::uint32_t Info = 16;
}  // namespace NotifyIconFlag

// What the shell is told about the icon. Texts travel up to their first NUL and are cut at the room the shell gives
// them.
struct NotifyIconRecord {
    WindowHandle Window = 0;
    // In the wide form, of the NT family, or in the single-byte form.
    bool IsWide = false;
    // In the larger record that systems with balloons know.
    bool HasBalloons = false;
    std::uint32_t Flags = 0;
    // By its 32 significant bits.
    std::int32_t Icon = 0;
    Text Tip;
    Text Info;
    Text InfoTitle;
    std::uint32_t InfoFlags = 0;
    // Milliseconds; how long a balloon stays.
    std::uint32_t Timeout = 0;
    // Of the shell's behaviour, for SetVersion.
    std::uint32_t Version = 0;
};

enum class NotifyIconCall : std::uint32_t { Add = 0, Modify = 1, Delete = 2, SetVersion = 4 };

class TrayIconListener {
public:
    virtual ~TrayIconListener() = default;
    // A mouse or balloon message of the icon.
    virtual void TrayMessage(std::uint32_t message) = 0;
    // The shell has made the notification area anew; it holds no icon of this program.
    virtual void TaskbarCreated() = 0;
};

class TrayIcon {
public:
    virtual ~TrayIcon() = default;
    // From now on messages of the icon that reach `window`, of the calling thread, go to `listener`, until
    // StopListening or the end of the window. One listener at a time.
    virtual void Listen(WindowHandle window, TrayIconListener& listener) = 0;
    virtual void StopListening() noexcept = 0;
    // False when there is no notification area or the shell refuses; nothing else follows from that.
    virtual bool Notify(NotifyIconCall call, const NotifyIconRecord& record) noexcept = 0;
};

}  // namespace tb
