// What the forms of one program share: the system that makes their windows, and the list of those that are loaded.
#pragma once

#include <vector>

#include "base/event.h"
#include "ui/window/Peers.h"

namespace tb {

class Form;

class Forms {
public:
    // Without a system the forms have no windows. The system must outlive all forms.
    explicit Forms(WindowSystem* system = nullptr) : m_System(system) {}
    Forms(const Forms&) = delete;
    Forms& operator=(const Forms&) = delete;

    WindowSystem* System() const { return m_System; }
    TwipSize ScreenSize() const;
    TwipScale Scale() const;

    // The forms that are loaded, in the order of loading.
    const std::vector<Form*>& Loaded() const { return m_Loaded; }

    // The last loaded form has been unloaded: the program has nothing left to live for.
    Event<> LastUnloadedEvent;

private:
    friend class Form;
    void Add(Form& form);
    // `raise`: tell when it was the last one.
    void Remove(Form& form, bool raise);
    void BeginModal(Form& form);
    // Does nothing for a form that is not shown modally.
    void EndModal(Form& form);
    bool IsBlocked(const Form& form) const;

    WindowSystem* m_System;
    // A form that is shown modally, and those that take no input until it goes.
    struct Modal {
        Form* Shown;
        std::vector<Form*> Blocked;
    };
    std::vector<Form*> m_Loaded;
    std::vector<Modal> m_Modals;
};

}  // namespace tb
