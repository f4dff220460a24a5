// A program with a skin of the test's own and windows that are only remembered.
#pragma once

#include "components/tbXML/Document.h"
#include "fakes/FakePlatform.h"
#include "fakes/FakeWindowSystem.h"
#include "fakes/RecordedLog.h"
#include "sitedb/codec/Base64.h"
#include "ui/settings/xmlINI.h"
#include "ui/skin/tbSkin.h"
#include "ui/window/Label.h"

namespace tb {

inline ElementPtr Xml(const Text& text) {
    Document document;
    document.LoadXML(text);
    return document.Root();
}

struct SkinRig {
    // The elements of the windows in the program's own skin, and the attributes of its root.
    void SetSkin(const Text& windows, const Text& root = {}) {
        Program.SkinRoot = Xml("<Skin " + root + ">" + windows + "</Skin>");
    }
    // The same of the skin that came with the defaults.
    void SetOverride(const Text& windows, const Text& root = {}) {
        if (!Program.Settings) {
            Program.Settings = std::make_shared<xmlINI>(xmlINI::Surroundings{System.Files, System.Clock, System.Dialogs,
                                                                             Program.Product.Separators, "Trawlbeam"});
        }
        Program.Settings->ReplaceGlobals("SKIN", Xml("<Skin " + root + ">" + windows + "</Skin>"));
    }

    FakeSystem System;
    App Program{System, TestDeployment()};
    RecordedLog Log;
};

// A window that is loaded, 5145 by 1500 twips.
struct SkinnedWindow : Form {
    SkinnedWindow(SkinRig& rig, Forms& forms)
        : Form(forms, "frmMessage"), tbSkin1(AddWith<tbSkin>("tbSkin1", rig.Program, rig.Log)) {
        Move(300, 300, 5145, 1500);
        Load();
    }
    template <typename Type>
    Type& The(const char* name, std::int32_t index = NoIndex) {
        return dynamic_cast<Type&>(*Find(name, index));
    }
    tbSkin& tbSkin1;
};

struct WindowRig : SkinRig {
    FakeWindowSystem Windows;
    Forms Family{&Windows};
    // The calls that have this in them.
    Text Calls(TextView wanted) {
        std::vector<Text> found;
        for (const Text& call : Windows.Calls) {
            if (call.find(wanted) != Text::npos) found.push_back(call);
        }
        return Join(found, ", ");
    }
};

// What the fake windows decode as a picture of that size in one colour: "16x16 FF0000".
inline Text PictureText(const Text& description) { return Base64Encode(description); }

}  // namespace tb
