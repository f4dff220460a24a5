// A list of controls with names of their own: that of a form, or that of a control which is made of others.
#pragma once

#include "ui/window/Control.h"

namespace tb {

class ControlHost {
public:
    ControlHost(const ControlHost&) = delete;
    ControlHost& operator=(const ControlHost&) = delete;
    virtual ~ControlHost() = default;

    // Adds a control at the end of the list. With an index it becomes that element of the control array `name`. Error
    // 727 when the name is taken, 360 when the index is.
    template <typename Type>
    Type& Add(const Text& name, std::int32_t index = NoIndex, Control* container = nullptr) {
        return static_cast<Type&>(AddControl(std::make_shared<Type>(PlaceOf(name, index, container))));
    }
    // The same for one that is made of more than its place.
    template <typename Type, typename... More>
    Type& AddWith(const Text& name, More&&... more) {
        return static_cast<Type&>(
            AddControl(std::make_shared<Type>(PlaceOf(name, NoIndex, nullptr), std::forward<More>(more)...)));
    }
    // Takes a control, and those that it holds, out of the list. Safe inside its own event.
    void Remove(Control& control);
    // The controls in the order of adding.
    const std::vector<std::shared_ptr<Control>>& Controls() const { return m_Controls; }
    // Null when there is none.
    Control* Find(TextView name, std::int32_t index = NoIndex) const;

protected:
    ControlHost() = default;

    virtual Control& HostControl() = 0;
    // Null while the controls have no windows.
    virtual FormPeer* PeerOfForm() const = 0;
    void MakePeersOfControls(FormPeer& form);
    void DropPeersOfControls() noexcept;

private:
    ControlPlace PlaceOf(const Text& name, std::int32_t index, Control* container) {
        Control& self = HostControl();
        return {self.Parent(), name, index, container != nullptr ? container : &self, this};
    }
    Control& AddControl(const std::shared_ptr<Control>& control);

    std::vector<std::shared_ptr<Control>> m_Controls;
};

}  // namespace tb
