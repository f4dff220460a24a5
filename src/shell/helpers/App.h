// The values that belong to the whole process, in one object: the program makes one, tests make one each. Nothing else
// is static and mutable.
#pragma once

#include <filesystem>
#include <map>
#include <memory>

#include "base/event.h"
#include "platform/Clipboard.h"
#include "platform/Clock.h"
#include "platform/Dialogs.h"
#include "platform/FileVersions.h"
#include "platform/Files.h"
#include "platform/Machine.h"
#include "platform/Processes.h"
#include "platform/Pump.h"
#include "platform/Random.h"
#include "platform/Registry.h"
#include "platform/Resources.h"
#include "platform/Shell.h"
#include "platform/WindowText.h"
#include "shell/helpers/ComponentList.h"
#include "shell/helpers/DebugSwitch.h"

namespace tb {

// The system that the program runs on. All of it outlives the App.
struct Platform {
    tb::Clock& Clock;
    tb::Random& Random;
    tb::Pump& Pump;
    tb::Files& Files;
    tb::Dialogs& Dialogs;
    tb::Resources& Resources;
    tb::Processes& Processes;
    tb::Shell& Shell;
    tb::FileVersions& FileVersions;
    tb::Registry& Registry;
    tb::Machine& Machine;
    tb::WindowText& WindowText;
    tb::Clipboard& Clipboard;
};

// What a deployment decides and the program holds.
struct Deployment {
    Text ProductName;
    // "major.minor.revision" of this program.
    Text Version;
    // Where "home page" leads when the skin names none.
    Text HomePage;
    // Of the user's locale, for the dates in files.
    DateSeparators Separators;
    // The base address of the ten numbered servers that the defaults come from, "{?}" for the number.
    Text ServerTemplate;
    // The public key of program updates, Base64 of its X and Y; empty when they are not signed.
    Text UpdateKey = {};
    // Guards the list and the data files against what a server says.
    bool ListGuard = false;
    // "YYYYMMDDHHMM", GMT: no clock of this program's life tells less; empty when it is not known.
    Text BuildStamp = {};
};

class MessageBoxes;

class App {
public:
    App(const Platform& system, Deployment deployment);
    App(const App&) = delete;
    App& operator=(const App&) = delete;

    // The folder of the program's file.
    const std::filesystem::path& Path() const { return m_Path; }
    // The same for lines and command lines, without a trailing backslash.
    const Text& AppPath() const { return m_AppPath; }

    const Platform System;
    const Deployment Product;

    // Null until the start has made it and after the exit has dropped it, which can happen inside any question or wait:
    // an operation that has one holds what it goes on with.
    std::shared_ptr<xmlINI> Settings;
    // Of those settings.
    mutable DebugMode Debug{Settings};
    // The root of the skin document; read only.
    ElementPtr SkinRoot;
    std::shared_ptr<tb::ComponentList> Components;
    std::int32_t SessionId = 0;
    std::int32_t AgentNumber = 0;
    Text HomeURL;
    Text HelpFile;
    std::int32_t AppBackColor = 0;
    // A gate found that this copy must be updated.
    bool NeedToUpdate = false;
    // The panel that a double click on the icon opens.
    std::int16_t LastPanel = 0;
    // The program's own message boxes: from the step of the start on at which there is a skin until the exit. Null
    // means the system's.
    MessageBoxes* Messages = nullptr;
    // How many messages and dialogs of the program wait for the user, one above the other; see OpenDialog.
    mutable std::int32_t OpenDialogs = 0;
    bool ModalDialogOpen() const { return OpenDialogs > 0; }
    // By the name of a data file, the date of the servers' copy that was refused last.
    std::map<Text, Date> RefusedFiles;
    // Images of wave files; empty until they are loaded.
    Text ClickSound;
    Text AlertSound;
    // The activity controller exists.
    bool HasController = false;

    // Lines for the diagnostics view; those of the log in debug mode.
    Event<Text> DebugMessage;

private:
    std::filesystem::path m_Path;
    Text m_AppPath;
};

}  // namespace tb
