#include "ui/window/ControlHost.h"

#include <algorithm>

#include "ui/window/ControlErrors.h"

namespace tb {

Control& ControlHost::AddControl(const std::shared_ptr<Control>& control) {
    const Text name = LowerCase(control->Name());
    for (const auto& other : m_Controls) {
        if (LowerCase(other->Name()) != name) continue;
        const bool elements = other->Index() != NoIndex && control->Index() != NoIndex;
        if (!elements) throw Error(ControlErrorNumber::NameInUse);
        if (other->Index() == control->Index()) throw Error(ControlErrorNumber::AlreadyLoaded);
    }
    m_Controls.push_back(control);
    try {
        if (FormPeer* const peer = PeerOfForm()) control->MakePeer(*peer);
    } catch (...) {
        m_Controls.pop_back();
        throw;
    }
    return *control;
}

void ControlHost::Remove(Control& control) {
    const auto place = std::find_if(m_Controls.begin(), m_Controls.end(),
                                    [&](const std::shared_ptr<Control>& one) { return one.get() == &control; });
    if (place == m_Controls.end()) return;
    const std::shared_ptr<Control> kept = *place;
    m_Controls.erase(place);
    std::vector<Control*> held;
    for (const auto& one : m_Controls) {
        if (one->Container() == &control) held.push_back(one.get());
    }
    for (Control* const one : held) Remove(*one);
    kept->DropPeer();
}

Control* ControlHost::Find(TextView name, std::int32_t index) const {
    const Text wanted = LowerCase(name);
    for (const auto& control : m_Controls) {
        if (control->Index() == index && LowerCase(control->Name()) == wanted) return control.get();
    }
    return nullptr;
}

void ControlHost::MakePeersOfControls(FormPeer& form) {
    for (const auto& control : m_Controls) control->MakePeer(form);
}

void ControlHost::DropPeersOfControls() noexcept {
    // What a box holds goes before the box.
    for (size_t index = m_Controls.size(); index-- > 0;) m_Controls[index]->DropPeer();
}

}  // namespace tb
