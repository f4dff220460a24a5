#include "ui/skin/WindowSkin.h"

#include "ui/settings/xmlINI.h"
#include "ui/skin/SkinPictures.h"

namespace tb {

namespace {

// The group of the defaults that is a skin.
constexpr TextView SkinGroup = "Skin";

}  // namespace

PictureRef WindowSkin::Icon(const Forms& forms) const {
    return Builtin == nullptr ? nullptr : PictureFromByteStream(forms, PictureBytes(Builtin->Body()));
}

WindowSkin ReadWindowSkin(const App& app, TextView name) {
    WindowSkin skin;
    skin.Builtin = app.SkinRoot == nullptr ? nullptr : app.SkinRoot->FindElementAttribute2("Name", name);
    if (skin.Builtin == nullptr) return skin;
    const auto settings = app.Settings;
    if (settings != nullptr) skin.Override = settings->TryGlobalsElement(SkinGroup, "Name", name);
    skin.Cascade.EnterDefaults();
    skin.Cascade.Enter(app.SkinRoot);
    if (settings != nullptr) skin.Cascade.Enter(settings->TryGlobalsSection(SkinGroup));
    skin.Cascade.FindSkinAttribute2(skin.Override, skin.Builtin, "FormBackColor");
    skin.Cascade.EnterWindow(skin.Builtin, skin.Override);
    return skin;
}

}  // namespace tb
