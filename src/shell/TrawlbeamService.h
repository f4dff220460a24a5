// The program's protection as one object: the list of malicious sites, the verdict and the channel, put together over a
// platform. The program's main gives it a message loop.
#pragma once

#include <filesystem>

#include "base/log.h"
#include "platform/Dialogs.h"
#include "platform/Files.h"
#include "sitedb/EvilDB.h"
#include "urlcheck/BrowserChannel.h"
#include "urlcheck/StandaloneVerdictHost.h"
#include "urlcheck/UrlVerdict.h"

namespace tb {

class TrawlbeamService {
public:
    struct Platform {
        Files& Storage;
        Dialogs& Messages;
        LogSink& Log;
    };

    // `appPath` is the folder of the executable; snapshots lie in its folder "Data". The platform must outlive the
    // service.
    TrawlbeamService(const Platform& platform, const std::filesystem::path& appPath);

    // Restores the newest snapshot, so that the data is in memory before the channel exists. Without one the list is
    // empty and every site passes.
    void Start();

    // Entries held since the start.
    std::int32_t Count() const { return m_EvilDB.Count(); }

    // Handles one text of the channel's text box.
    ChannelResult HandleChannelText(const Text& line) const { return m_Channel.Handle(line); }

private:
    StandaloneVerdictHost m_Host;
    EvilDB m_EvilDB;
    UrlVerdict m_Verdict;
    BrowserChannel m_Channel;
};

}  // namespace tb
