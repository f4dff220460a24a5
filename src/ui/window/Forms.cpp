#include "ui/window/Forms.h"

#include <algorithm>

namespace tb {

namespace {

// What is reported where there is no screen.
constexpr TwipSize SizeWithoutScreen{15360, 11520};

}  // namespace

TwipSize Forms::ScreenSize() const { return m_System != nullptr ? m_System->ScreenSize() : SizeWithoutScreen; }

TwipScale Forms::Scale() const { return m_System != nullptr ? m_System->Scale() : TwipScale(); }

void Forms::Add(Form& form) { m_Loaded.push_back(&form); }

void Forms::Remove(Form& form, bool raise) {
    const auto place = std::find(m_Loaded.begin(), m_Loaded.end(), &form);
    if (place == m_Loaded.end()) return;
    m_Loaded.erase(place);
    if (raise && m_Loaded.empty()) LastUnloadedEvent.Raise();
}

}  // namespace tb
