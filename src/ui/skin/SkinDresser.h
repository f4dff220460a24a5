// Applies the parts of a window's skin that reach into its controls: pictures that are laid on it, properties and
// methods of what stands on it.
#pragma once

#include "shell/helpers/App.h"
#include "ui/skin/SkinPictures.h"
#include "ui/window/Form.h"

namespace tb {

// For one pass over one window. What a skin may cost is bounded: beyond 3000 components, properties and calls together,
// fewer with long texts, and beyond what SkinPictures bears, the rest is passed over.
class SkinDresser {
public:
    // `app` and `form` outlive it.
    SkinDresser(const App& app, Form& form);

    // Nothing for a null element, or one without the child that is meant.
    // Lays the children of "Graphics" on the form, as "uiPic0", "uiPic1", ..., under all that is there; a tag that is
    // neither "image" nor "picture" ends that, and so do the first hundred. Raises error 727 when a name is taken.
    void BuildGraphics(const ElementPtr& element);
    // Sets the properties of "Components" on all controls of the form that bear the name, expands tokens and calls
    // methods. What cannot be set is passed over, as are the property "Cancel" and texts of more than 65535 characters;
    // places and sizes end with the screen. Raises what a method raises, 438 for one that there is not and 450
    // for a number of arguments that it does not take.
    void ApplyComponents(const ElementPtr& element);
    // The colours of both once more, and whether the pictures are seen, after high contrast has come or gone.
    void ApplyColors(const ElementPtr& element);

private:
    enum class Reach { All, ColorsOnly };

    bool HasSteps(std::int32_t cost) { return (m_StepsLeft -= cost) >= 0; }
    static std::int32_t CostOf(const Control& control, const Text& value);
    // Each control of the form that a child of "Components" is for.
    template <typename Apply>
    void ForTargets(const ElementPtr& element, const Apply& apply);
    void ApplyProperties(Control& control, const Element& element, Reach reach);
    void ApplyProperty(Control& control, const Text& name, const Text& value);
    Text Expanded(const Text& value) const;
    void ApplyComponent(Control& control, const Element& component);
    void CallMethod(Control& control, const Element& method);
    void ShowPicture(VisualControl& picture, const Element& element);
    std::int32_t Bounded(TextView property, const Text& value) const;

    const App& m_App;
    Form& m_Form;
    SkinPictures m_Pictures;
    bool m_HighContrast;
    std::int32_t m_StepsLeft = 3000;
};

// How many of so many parameters a method is given; nothing when it is not called at all.
std::optional<size_t> ArgumentsPassed(size_t parameters);

}  // namespace tb
