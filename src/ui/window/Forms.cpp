#include "ui/window/Forms.h"

#include <algorithm>

#include "ui/window/Form.h"

namespace tb {

namespace {

// What is reported where there is no screen.
constexpr TwipSize SizeWithoutScreen{15360, 11520};

}  // namespace

TwipSize Forms::ScreenSize() const { return m_System != nullptr ? m_System->ScreenSize() : SizeWithoutScreen; }

TwipScale Forms::Scale() const { return m_System != nullptr ? m_System->Scale() : TwipScale(); }

void Forms::Add(Form& form) { m_Loaded.push_back(&form); }

void Forms::Remove(Form& form, bool raise) {
    EndModal(form);
    for (Modal& modal : m_Modals) {
        modal.Blocked.erase(std::remove(modal.Blocked.begin(), modal.Blocked.end(), &form), modal.Blocked.end());
    }
    const auto place = std::find(m_Loaded.begin(), m_Loaded.end(), &form);
    if (place == m_Loaded.end()) return;
    m_Loaded.erase(place);
    if (raise && m_Loaded.empty()) LastUnloadedEvent.Raise();
}

void Forms::BeginModal(Form& form) {
    Modal modal{&form, {}};
    for (Form* const other : m_Loaded) {
        if (other != &form && other->Visible()) modal.Blocked.push_back(other);
    }
    m_Modals.push_back(modal);
    for (Form* const other : modal.Blocked) other->ApplyEnabled();
}

void Forms::EndModal(Form& form) {
    const auto shown = [&](const Modal& modal) { return modal.Shown == &form; };
    const auto place = std::find_if(m_Modals.begin(), m_Modals.end(), shown);
    if (place == m_Modals.end()) return;
    const std::vector<Form*> blocked = std::move(place->Blocked);
    m_Modals.erase(place);
    for (Form* const other : blocked) other->ApplyEnabled();
}

bool Forms::IsBlocked(const Form& form) const {
    return std::any_of(m_Modals.begin(), m_Modals.end(), [&](const Modal& modal) {
        return std::find(modal.Blocked.begin(), modal.Blocked.end(), &form) != modal.Blocked.end();
    });
}

}  // namespace tb
