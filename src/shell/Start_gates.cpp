#include "base/errors.h"
#include "base/numbers.h"
#include "components/tbBHBridge/ChannelClient.h"
#include "components/tbXML/Document.h"
#include "shell/Start.h"
#include "sitedb/codec/Encryption.h"
#include "sitedb/codec/StringBuilder.h"

namespace tb {

namespace {

// Holds the numbers of the skin's first and last resource, joined by a hyphen.
constexpr std::int32_t SkinRangeResource = 96;

constexpr int PreviousInstanceWaits = 10;
constexpr std::int32_t PreviousInstanceMilliseconds = 5000;

}  // namespace

bool Start::ReadSkinXML() {
    return TrapOr(
        false,
        [&] {
            m_App.SkinRoot.reset();
            Document document;
            document.LoadXML(SkinText());
            if (!document.Root()) throw Error(ErrorNumber::ObjectNotSet);
            m_App.SkinRoot = document.Root();
            return true;
        },
        [&](const RuntimeError& error) {
            m_Log.WriteLog("Error Read Skin XML: " + error.Description, LogLevel::Always);
        });
}

Text Start::SkinText() {
    Resources& resources = m_App.System.Resources;
    const std::vector<Text> range = Split(resources.String(SkinRangeResource), '-');
    const std::int32_t first = ToInt32(At(range, 0));
    const std::int32_t last = ToInt32(At(range, 1));
    StringBuilder text;
    for (std::int32_t id = first; id <= last; ++id) text.Append(resources.String(id));
    const bool encoded = text.lCount() > 0 && Left(text.Item(0), 1) != "<";
    return encoded ? UnscrambleString(text.ToString(), 0) : text.ToString();
}

bool Start::CheckNameAndPreviousInstance() {
    if (m_Installation.CheckName()) return true;
    Processes& processes = m_App.System.Processes;
    if (!processes.IsPreviousInstance()) return m_Installation.CheckUpdaterRunning();
    const Text& product = m_App.Product.ProductName;
    m_Log.WriteLog(product + " CheckNameAndPreviousInstance - App.PrevInstance TRUE", LogLevel::Always);
    // Time for an instance that an update is about to replace to go away.
    for (int wait = 0; wait < PreviousInstanceWaits && processes.IsPreviousInstance(); ++wait) {
        m_Log.WriteLog(product + " Sleeping while App.PrevInstance (" + std::to_string(wait) + ")", LogLevel::Always);
        m_App.System.Pump.Sleep(PreviousInstanceMilliseconds);
    }
    WakePreviousInstance();
    return true;
}

void Start::WakePreviousInstance() {
    const Text who = m_App.Product.ProductName + " CheckNameAndPreviousInstance - App.PrevInstance, ";
    ChannelClient client(m_App.System.WindowText);
    if (!client.Locate()) return m_Log.WriteLog(who + "tbHandle not found", LogLevel::Always);
    m_Log.WriteLog(who + "send TBWAKEUP", LogLevel::Always);
    client.WakeUp();
}

}  // namespace tb
