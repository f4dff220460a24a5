// Answers clients that ask what changed since their stamp. It follows the store, which other processes change, and
// makes each answer once, however many clients ask for it. The whole list is made in the background. Until that of a
// new publication is ready, clients that must start anew get the one before: it is as good a state as any, and they ask
// for what changed since. Threads: any.
#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

#include "base/log.h"
#include "service/store/ServiceStore.h"
#include "service/web/SiteTexts.h"

namespace tb {

class SiteFeed {
public:
    using Framed = std::shared_ptr<const Text>;

    // Makes the first whole list before it returns. Raises a StoreError when there is no store or it cannot be read.
    // `log` must outlive the feed.
    SiteFeed(const std::filesystem::path& folder, LogSink& log);
    SiteFeed(const SiteFeed&) = delete;
    SiteFeed& operator=(const SiteFeed&) = delete;
    ~SiteFeed();

    // The update reply for a client at `stamp`, which may be any text: the changes since then; nothing, for the latest
    // one; or the whole list when the record does not know the stamp. Includes every publication made before the call.
    // Empty until the first one: the client keeps what it has.
    Framed ReplySince(const Text& stamp);

    // What is published now.
    std::shared_ptr<const ChangeText> Changes();

    // How often a whole list was made.
    int WholeListsMade() const { return m_WholeListsMade; }

private:
    std::shared_ptr<const ChangeText> Follow();
    Framed Remembered(const Text& stamp, size_t begin);
    void MakeWholeList(ServiceStore& store);
    void KeepWholeList(const std::filesystem::path& folder);
    bool IsWholeListDue();

    LogSink& m_Log;
    std::mutex m_Mutex;
    // Under the mutex.
    ServiceStore m_Store;
    std::shared_ptr<const ChangeText> m_Changes;
    bool m_IsStale = true;
    std::unordered_map<Text, Framed> m_Replies;
    size_t m_RepliesSize = 0;
    Text m_WholeStamp;
    Framed m_Whole;
    std::condition_variable m_Wake;
    std::chrono::steady_clock::time_point m_NextWholeList;

    std::atomic<bool> m_Stop = false;
    std::atomic<int> m_WholeListsMade = 0;
    std::thread m_Keeper;
};

}  // namespace tb
