// What everything here works with: the program's values, its log, and a way to the web services.
#pragma once

#include "base/log.h"
#include "components/tbSender/Sender.h"
#include "platform/Signatures.h"
#include "shell/helpers/App.h"

namespace tb {

// All that it names outlives whoever holds it. While a sender waits, handlers run that may end the program's settings.
struct ServiceAccess {
    App& Program;
    LogSink& Log;
    // Gives each exchange a sender of its own.
    SenderFactory MakeSender;
    // Checks what the services have signed; null checks nothing, and then nothing that must be signed is taken.
    tb::Signatures* Signatures = nullptr;

    // Held by whoever asks, for as long as he uses them. Error 91 before they exist and after they have gone.
    std::shared_ptr<xmlINI> Settings() const;
    // The server element of a service in the defaults data; null when they have none of that name, error 5 when they
    // have no servers at all.
    ElementPtr Servers(TextView service) const;
    std::filesystem::path DataFolder() const { return Program.Path() / "Data"; }
    // A file in it, by its name.
    std::filesystem::path DataFile(TextView name) const;
};

}  // namespace tb
