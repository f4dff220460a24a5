#include "ui/skin/SkinDresser.h"

#include <algorithm>
#include <array>

#include "base/errors.h"
#include "base/numbers.h"
#include "ui/skin/ContrastColors.h"
#include "ui/skin/Tokens.h"
#include "ui/window/Image.h"
#include "ui/window/PictureBox.h"

namespace tb {

namespace {

constexpr std::int32_t MostPictures = 100;
// No text of a window is as long; laying it out would hold up who waits for an answer.
constexpr size_t LongestValue = 65535;

// A property or method call costs one step, and another one for so many characters of the control's text, which may be
// laid out anew.
constexpr size_t CharactersAStep = 1000;

// Properties, and the arguments of the method Move.
constexpr std::array<TextView, 4> Places = {"left", "top", "width", "height"};

bool IsPlace(TextView name) { return std::find(Places.begin(), Places.end(), name) != Places.end(); }

ElementPtr Child(const ElementPtr& element, TextView name) {
    return element == nullptr ? nullptr : element->FindElement(name);
}

Text PictureName(std::int32_t number) { return "uiPic" + std::to_string(number); }

// The property in whose text tokens are expanded; empty for classes without one.
Text TextPropertyOf(const Control& control) {
    const Text name = LowerCase(control.Class().Name());
    if (name == "label") return "caption";
    if (name == "richtextbox") return "textrtf";
    return name == "xlinklabel" ? "url" : "";
}

}  // namespace

std::optional<size_t> ArgumentsPassed(size_t parameters) {
    constexpr size_t Unreduced = 4;
    constexpr size_t Most = 6;
    if (parameters > Most) return std::nullopt;
    return parameters > Unreduced ? parameters - 1 : parameters;
}

SkinDresser::SkinDresser(const App& app, Form& form)
    : m_App(app), m_Form(form), m_Pictures(form.Family()), m_HighContrast(form.Family().HighContrast()) {}

void SkinDresser::BuildGraphics(const ElementPtr& element) {
    const ElementPtr graphics = Child(element, "Graphics");
    if (graphics == nullptr) return;
    std::int32_t number = 0;
    for (const ElementPtr& child : *graphics) {
        if (number == MostPictures) return;
        const Text tag = LowerCase(child->Name());
        VisualControl* picture = nullptr;
        if (tag == "image") {
            auto& image = m_Form.Add<Image>(PictureName(number));
            image.SetPicture(m_Pictures.Read(child->Body()));
            picture = &image;
        } else if (tag == "picture") {
            auto& box = m_Form.Add<PictureBox>(PictureName(number));
            box.SetAutoRedraw(true);
            box.SetPicture(m_Pictures.Read(child->Body()));
            picture = &box;
        } else {
            return;
        }
        picture->ZOrder(1);
        ApplyProperties(*picture, *child, Reach::All);
        if (m_HighContrast) picture->SetVisible(false);
        ++number;
    }
}

void SkinDresser::ApplyProperties(Control& control, const Element& element, Reach reach) {
    for (std::int32_t index = 1; index <= element.AttributeCount(); ++index) {
        const Attribute& attribute = element.Attribute(index);
        const Text name = LowerCase(attribute.Name());
        if (name == "name" || attribute.Value().empty() || attribute.Value().size() > LongestValue) continue;
        // Which button Escape presses is not the skin's to say: it might be one that closes nothing.
        if (name == "cancel") continue;
        if (reach == Reach::ColorsOnly && !ContrastColorOfProperty(name)) continue;
        if (!HasSteps(CostOf(control, attribute.Value()))) return;
        Trap([&] { ApplyProperty(control, name, attribute.Value()); },
             [](const RuntimeError&) { /* it has no effect */ });
    }
}

void SkinDresser::ApplyProperty(Control& control, const Text& name, const Text& value) {
    const std::optional<Color> contrast = m_HighContrast ? ContrastColorOfProperty(name) : std::nullopt;
    if (contrast) return control.SetProperty(name, *contrast);
    if (IsPlace(name)) return control.SetProperty(name, Bounded(name, value));
    // A control for formatted text gives back another text than it was given, without the braces of tokens.
    if (name == TextPropertyOf(control)) return control.SetProperty(name, Expanded(value));
    control.SetProperty(name, value);
}

std::int32_t SkinDresser::CostOf(const Control& control, const Text& value) {
    const Text property = TextPropertyOf(control);
    const size_t held = property.empty() ? 0 : control.GetProperty(property).AsText().size();
    return static_cast<std::int32_t>(1 + (value.size() + held) / CharactersAStep);
}

std::int32_t SkinDresser::Bounded(TextView property, const Text& value) const {
    const TwipSize screen = m_Form.Family().ScreenSize();
    const bool across = property == "left" || property == "width";
    const Twips most = across ? screen.Width : screen.Height;
    const double wanted = ToDouble(value);
    return RoundToInt32(std::clamp(wanted, -1.0 * most, 1.0 * most));
}

Text SkinDresser::Expanded(const Text& value) const { return Text(Left(ExpandTokens(m_App, value), LongestValue)); }

void SkinDresser::ApplyComponents(const ElementPtr& element) {
    ForTargets(element, [this](Control& control, const Element& component) { ApplyComponent(control, component); });
}

template <typename Apply>
void SkinDresser::ForTargets(const ElementPtr& element, const Apply& apply) {
    const ElementPtr components = Child(element, "Components");
    if (components == nullptr) return;
    for (const ElementPtr& component : *components) {
        const Text name = LowerCase(component->FindAttributeValue("name"));
        // What is set may add controls to the form, or take some away.
        const auto controls = m_Form.Controls();
        if (!HasSteps(1)) return;
        for (const auto& control : controls) {
            if (LowerCase(control->Name()) == name) apply(*control, *component);
        }
    }
}

void SkinDresser::ApplyComponent(Control& control, const Element& component) {
    ApplyProperties(control, component, Reach::All);
    const Text property = TextPropertyOf(control);
    if (!property.empty() && component.FindAttributeValue(property).empty()) {
        Trap([&] { control.SetProperty(property, Expanded(control.GetProperty(property).AsText())); },
             [](const RuntimeError&) { /* the text stays */ });
    }
    for (const ElementPtr& method : component) {
        if (!HasSteps(CostOf(control, {}))) return;
        CallMethod(control, *method);
    }
}

void SkinDresser::CallMethod(Control& control, const Element& method) {
    const std::optional<size_t> passed = ArgumentsPassed(static_cast<size_t>(method.Count()));
    if (!passed) return;
    std::vector<Value> arguments;
    for (auto parameter = method.begin(); arguments.size() < *passed; ++parameter) {
        const Text type = LowerCase((*parameter)->FindAttributeValue("Type"));
        Value& argument = arguments.emplace_back();
        if (type == "string") argument = Text(Left((*parameter)->Body(), LongestValue));
        if (type == "picture") argument = m_Pictures.Read((*parameter)->Body());
    }
    const Text name = LowerCase(method.FindAttributeValue("Name"));
    if (name == "move" && arguments.size() <= Places.size()) {
        for (size_t index = 0; index < arguments.size(); ++index) {
            if (arguments[index].What() == Value::Kind::Empty) continue;
            arguments[index] = Bounded(Places.at(index), arguments[index].AsText());
        }
    }
    control.CallMethod(name, arguments);
}

void SkinDresser::ApplyColors(const ElementPtr& element) {
    if (const ElementPtr graphics = Child(element, "Graphics")) {
        std::int32_t number = 0;
        for (const ElementPtr& child : *graphics) {
            auto* const picture = dynamic_cast<VisualControl*>(m_Form.Find(PictureName(number++)));
            if (picture == nullptr) break;
            ShowPicture(*picture, *child);
        }
    }
    ForTargets(element, [this](Control& control, const Element& component) {
        ApplyProperties(control, component, Reach::ColorsOnly);
    });
}

void SkinDresser::ShowPicture(VisualControl& picture, const Element& element) {
    const Text visible = element.FindAttributeValue("Visible");
    Trap([&] { picture.SetVisible(!m_HighContrast && (visible.empty() || Value(visible).AsBoolean())); },
         [&](const RuntimeError&) { picture.SetVisible(true); });
    ApplyProperties(picture, element, Reach::ColorsOnly);
}

}  // namespace tb
