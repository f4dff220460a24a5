#include "ui/window/win32/Win32WindowSystem.h"

#include "platform/win32/Win32Machine.h"
#include "platform/win32/Win32Text.h"
#include "ui/window/win32/Win32Drawing.h"
#include "ui/window/win32/Win32FormPeer.h"
#include "ui/window/win32/pcMemDC.h"

namespace tb {

Win32WindowSystem::Win32WindowSystem(const ClassNames& names, std::function<void(const RuntimeError&)> failed)
    : m_Names(names), m_Failed(std::move(failed)), m_Dpi(DotsPerInch()), m_Scale(m_Dpi), m_Fonts(m_Dpi) {}

std::unique_ptr<FormPeer> Win32WindowSystem::MakeForm(FormEvents& events, PointerEvents& pointer) {
    return std::make_unique<Win32FormPeer>(*this, events, pointer);
}

PixelRect Win32WindowSystem::ToPixels(const TwipRect& area) const {
    return {m_Scale.ToPixels(area.Left), m_Scale.ToPixels(area.Top), m_Scale.ToPixels(area.Width),
            m_Scale.ToPixels(area.Height)};
}

TwipRect Win32WindowSystem::ToTwips(const RECT& area) const {
    const auto twips = [this](LONG pixels) { return m_Scale.ToTwips(static_cast<std::int32_t>(pixels)); };
    return {twips(area.left), twips(area.top), twips(area.right - area.left), twips(area.bottom - area.top)};
}

TwipSize Win32WindowSystem::ScreenSize() const {
    return {m_Scale.ToTwips(GetSystemMetrics(SM_CXSCREEN)), m_Scale.ToTwips(GetSystemMetrics(SM_CYSCREEN))};
}

std::vector<Screen> Win32WindowSystem::Screens() const {
    struct Found {
        const Win32WindowSystem& System;
        std::vector<Screen> Screens;
    } found{*this, {}};
    const auto add = [](HMONITOR monitor, HDC, LPRECT, LPARAM parameter) -> BOOL {
        auto& all = *reinterpret_cast<Found*>(parameter);
        MONITORINFO info{};
        info.cbSize = sizeof info;
        if (!GetMonitorInfoW(monitor, &info)) return TRUE;
        const bool isMain = (info.dwFlags & MONITORINFOF_PRIMARY) != 0;
        all.Screens.insert(isMain ? all.Screens.begin() : all.Screens.end(),
                           {all.System.ToTwips(info.rcMonitor), all.System.ToTwips(info.rcWork)});
        return TRUE;
    };
    EnumDisplayMonitors(nullptr, nullptr, add, reinterpret_cast<LPARAM>(&found));
    if (found.Screens.empty()) {
        const TwipSize size = ScreenSize();
        const TwipRect all{0, 0, size.Width, size.Height};
        found.Screens.push_back({all, all});
    }
    return found.Screens;
}

TwipPoint Win32WindowSystem::Pointer() const {
    POINT mouse{};
    GetCursorPos(&mouse);
    return ToTwips(PixelPoint{static_cast<std::int32_t>(mouse.x), static_cast<std::int32_t>(mouse.y)});
}

TwipSize Win32WindowSystem::MeasureText(const Text& text, const tb::Font& font, Twips width) const {
    const OwnedDc context(CreateCompatibleDC(nullptr));
    const auto owner = FontOf(font);
    const Selected selected(context.Get(), owner->Get());
    const std::wstring shown = ToSystem(text);
    RECT area{0, 0, m_Scale.ToPixels(width), 0};
    const UINT breaks = width > 0 ? LabelLayout : LabelLayout & ~static_cast<UINT>(DT_WORDBREAK);
    DrawTextW(context.Get(), shown.c_str(), static_cast<int>(shown.size()), &area, breaks | DT_NOPREFIX | DT_CALCRECT);
    const TwipRect twips = ToTwips(area);
    return {twips.Width, twips.Height};
}

bool Win32WindowSystem::HighContrast() const {
    HIGHCONTRASTW state{};
    state.cbSize = sizeof state;
    return SystemParametersInfoW(SPI_GETHIGHCONTRAST, sizeof state, &state, 0) &&
           (state.dwFlags & HCF_HIGHCONTRASTON) != 0;
}

Color Win32WindowSystem::Resolved(Color color) const {
    return color.IsSystem() ? Color(static_cast<std::int32_t>(ToColorRef(color))) : color;
}

void Win32WindowSystem::Failed(const RuntimeError& error) const noexcept {
    if (m_Failed) m_Failed(error);
}

}  // namespace tb
