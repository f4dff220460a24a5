// A program with a skin of the test's own.
#pragma once

#include "components/tbXML/Document.h"
#include "fakes/FakePlatform.h"
#include "fakes/RecordedLog.h"
#include "ui/settings/xmlINI.h"

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

}  // namespace tb
