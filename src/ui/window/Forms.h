// What the forms of one program share: the system that makes their windows, and the list of those that are loaded.
#pragma once

#include <vector>

#include "base/event.h"
#include "ui/window/Peers.h"

namespace tb {

class Form;

// The screen with the point, or the one that is nearest to it. `screens` has at least one.
const Screen& ScreenAt(const std::vector<Screen>& screens, const TwipPoint& point);
// The room of the screen that holds the middle of an area, or that is nearest to it.
TwipRect RoomAround(const std::vector<Screen>& screens, const TwipRect& area);

class Forms {
public:
    // Without a system the forms have no windows. The system must outlive all forms.
    explicit Forms(WindowSystem* system = nullptr) : m_System(system) {}
    Forms(const Forms&) = delete;
    Forms& operator=(const Forms&) = delete;

    WindowSystem* System() const { return m_System; }
    TwipSize ScreenSize() const;
    TwipScale Scale() const;
    // What the system answers (see WindowSystem). Without one: a single screen of 15360 by 11520 twips with the mouse
    // at its corner, letters that are all of one width, no pictures, no high contrast, and black for a colour of the
    // system's.
    std::vector<Screen> Screens() const;
    TwipPoint Pointer() const;
    TwipSize MeasureText(const Text& text, const Font& font, Twips width = 0) const;
    PictureRef Decode(const Text& bytes) const;
    bool HighContrast() const;
    Color Resolved(Color color) const;

    // The forms that are loaded, in the order of loading.
    const std::vector<Form*>& Loaded() const { return m_Loaded; }

    // Unloads those that are loaded, the last first, hidden ones too. Those that refuse stay.
    void UnloadAll(UnloadMode mode = UnloadMode::Code);

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
