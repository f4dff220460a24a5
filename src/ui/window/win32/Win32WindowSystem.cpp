#include "ui/window/win32/Win32WindowSystem.h"

#include "platform/win32/Win32Machine.h"
#include "ui/window/win32/Win32FormPeer.h"

namespace tb {

namespace {

constexpr int PointsPerInch = 72;
constexpr int FontPoints = 8;
constexpr const wchar_t* FontName = L"Tahoma";

OwnedFont MakeFont() {
    const int height = -MulDiv(FontPoints, DotsPerInch(), PointsPerInch);
    return OwnedFont(CreateFontW(height, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                                 CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, DEFAULT_PITCH, FontName));
}

}  // namespace

Win32WindowSystem::Win32WindowSystem(const ClassNames& names, std::function<void(const RuntimeError&)> failed)
    : m_Names(names), m_Failed(std::move(failed)), m_Scale(DotsPerInch()), m_Font(MakeFont()) {}

std::unique_ptr<FormPeer> Win32WindowSystem::MakeForm(FormEvents& events) {
    return std::make_unique<Win32FormPeer>(*this, events);
}

TwipSize Win32WindowSystem::ScreenSize() const {
    return {m_Scale.ToTwips(GetSystemMetrics(SM_CXSCREEN)), m_Scale.ToTwips(GetSystemMetrics(SM_CYSCREEN))};
}

void Win32WindowSystem::Failed(const RuntimeError& error) const noexcept {
    if (m_Failed) m_Failed(error);
}

}  // namespace tb
