#include "service/web/SiteFeed.h"

#include <sys/resource.h>

namespace tb {

namespace {

using SteadyClock = std::chrono::steady_clock;

// Up to this many sites the whole list takes milliseconds, and is made by whoever needs it.
constexpr std::int64_t SmallList = 10'000;
// Bytes of answers kept; a client that is far behind costs no more than making its answer anew.
constexpr size_t RepliesLimit = 64u << 20;
constexpr auto LookInterval = std::chrono::milliseconds(200);
// The keeper rests this many times as long as it worked, so that a list that changes all the time leaves time to
// answer.
constexpr int RestFactor = 10;
constexpr int KeeperNiceness = 10;

}  // namespace

SiteFeed::SiteFeed(const std::filesystem::path& folder, LogSink& log)
    : m_Log(log), m_Store(folder, ServiceStore::Opening::Existing) {
    Follow();
    MakeWholeList(m_Store);
    m_Keeper = std::thread([this, folder] { KeepWholeList(folder); });
}

SiteFeed::~SiteFeed() {
    {
        const std::lock_guard lock(m_Mutex);
        m_Stop = true;
    }
    m_Wake.notify_all();
    m_Keeper.join();
}

std::shared_ptr<const ChangeText> SiteFeed::Changes() {
    const std::lock_guard lock(m_Mutex);
    return Follow();
}

SiteFeed::Framed SiteFeed::ReplySince(const Text& stamp) {
    const std::lock_guard lock(m_Mutex);
    const auto changes = Follow();
    const Publication& latest = changes->Latest();
    if (latest.IsNone()) return m_Whole;
    if (stamp == latest.Stamp) return Remembered(stamp, changes->Lines.size());
    // A client without a stamp may hold what it salvaged of a bad snapshot, so it starts anew.
    const auto begin = changes->Begins.find(stamp);
    if (begin != changes->Begins.end() && stamp != NoSitesStamp) return Remembered(stamp, begin->second);
    if (m_WholeStamp != latest.Stamp && latest.Sites <= SmallList) MakeWholeList(m_Store);
    // The record was cut behind what this client got last, and the next whole list is on its way.
    if (stamp == m_WholeStamp) return std::make_shared<const Text>(FramedNothing(stamp));
    return m_Whole;
}

// Reads the record anew if a publication was made since the last look that did not fail.
std::shared_ptr<const ChangeText> SiteFeed::Follow() {
    if (m_Store.WasChanged()) m_IsStale = true;
    if (!m_IsStale) return m_Changes;
    if (!m_Changes || SiteHistory(m_Store).Latest().Stamp != m_Changes->Latest().Stamp) {
        m_Changes = std::make_shared<const ChangeText>(ReadChangeText(m_Store));
        m_Replies.clear();
        m_RepliesSize = 0;
    }
    m_IsStale = false;
    return m_Changes;
}

SiteFeed::Framed SiteFeed::Remembered(const Text& stamp, size_t begin) {
    if (const auto found = m_Replies.find(stamp); found != m_Replies.end()) return found->second;
    const bool isLatest = stamp == m_Changes->Latest().Stamp;
    auto reply = std::make_shared<const Text>(isLatest ? FramedNothing(stamp) : FramedChanges(*m_Changes, begin));
    if (m_RepliesSize + reply->size() > RepliesLimit) {
        m_Replies.clear();
        m_RepliesSize = 0;
    }
    m_RepliesSize += reply->size();
    return m_Replies[stamp] = std::move(reply);
}

// Called with the mutex held, or before there are other threads.
void SiteFeed::MakeWholeList(ServiceStore& store) {
    WholeList whole = FramedWholeList(store, m_Stop);
    m_WholeStamp = std::move(whole.Stamp);
    m_Whole = std::make_shared<const Text>(std::move(whole.Framed));
    ++m_WholeListsMade;
}

bool SiteFeed::IsWholeListDue() {
    const auto changes = Follow();
    if (m_WholeStamp == changes->Latest().Stamp) return false;
    return changes->Begins.count(m_WholeStamp) == 0 || SteadyClock::now() >= m_NextWholeList;
}

void SiteFeed::KeepWholeList(const std::filesystem::path& folder) {
    // Answers go first. Here a number of 0 means this thread.
    ::setpriority(PRIO_PROCESS, 0, KeeperNiceness);
    std::unique_lock lock(m_Mutex);
    while (!m_Stop) {
        try {
            if (IsWholeListDue()) {
                lock.unlock();
                const auto begin = SteadyClock::now();
                ServiceStore store(folder, ServiceStore::Opening::Existing);
                WholeList whole = FramedWholeList(store, m_Stop);
                const auto end = SteadyClock::now();
                lock.lock();
                if (m_Stop) return;
                ++m_WholeListsMade;
                m_NextWholeList = end + RestFactor * (end - begin);
                if (m_WholeStamp != Follow()->Latest().Stamp) {
                    m_WholeStamp = std::move(whole.Stamp);
                    m_Whole = std::make_shared<const Text>(std::move(whole.Framed));
                }
            }
        } catch (const std::exception& error) {
            if (!lock.owns_lock()) lock.lock();
            m_Log.WriteLog(Text("the whole list was not made: ") + error.what(), LogLevel::Always);
            m_NextWholeList = SteadyClock::now() + std::chrono::seconds(10);
        }
        m_Wake.wait_for(lock, LookInterval, [this] { return m_Stop.load(); });
    }
}

}  // namespace tb
