#include "ui/dialogs/DialogWindow.h"

#include <algorithm>

namespace tb {

Form* WindowBehind(const Form& dialog) {
    constexpr auto Minimized = static_cast<std::int32_t>(WindowStates::Minimized);
    const std::vector<Form*>& all = dialog.Family().Loaded();
    const auto found = std::find_if(all.rbegin(), all.rend(), [&](const Form* form) {
        // The system hides what a minimised window owns; corner windows go by themselves.
        return form != &dialog && form->Visible() && form->WindowState() != Minimized && form->ShowInTaskbar();
    });
    return found != all.rend() ? *found : nullptr;
}

Color GroundColor(const Form& dialog, const tbSkin& skin, const App& app) {
    const Color own = dialog.Family().HighContrast() ? SystemColors::ButtonFace : Color(app.AppBackColor);
    return skin.SkinColor("FormBackColor", own);
}

}  // namespace tb
