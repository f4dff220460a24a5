#include "shell/DatabaseHost.h"

#include "base/errors.h"
#include "shell/helpers/Messages.h"
#include "shell/helpers/SettingValues.h"
#include "sitedb/BuiltInCategories.h"

namespace tb {

void DatabaseHost::AllowSite(const Text& url) {
    if (m_Parts.Windows.AllowInWindow(url)) return;
    const std::shared_ptr<OverDB> overrides = m_Parts.Data.m_OverDB;
    if (!overrides) return;
    overrides->AddToDB(url);
    overrides->SaveDB();
}

void DatabaseHost::PlayAlertSound() {
    if (m_Parts.Device) m_Parts.Device->PlayAlertSound(true);
}

UrlScore DatabaseHost::ScoreURL(const Text& url, const Text& addresses) {
    UrlScore score;
    score.Flag = m_Parts.Tables.Countries->ScoreURL(url, addresses, score.Score, score.Country);
    return score;
}

void DatabaseHost::ShowNotifyURL(const Text& title, const Text& message, const Text& url, std::int32_t width,
                                 std::int32_t height, std::int32_t seconds, std::int32_t iconFlags,
                                 const Text& callback) {
    if (m_Parts.Windows.ShowNotifyURL(title, message, url, width, height, seconds, iconFlags, callback)) return;
    WriteLog("There is no window frmNotifyURL", LogLevel::Debug);
}

void DatabaseHost::ShowMessage(const Text& prompt, std::int32_t buttons) {
    tb::ShowMessage(m_Parts.Program, prompt, buttons);
}

Text DatabaseHost::CategoryName(const Text& id) {
    const App& app = m_Parts.Program;
    const ElementPtr categories = app.Settings ? app.Settings->TryGlobalsSection("CATEGORIES") : nullptr;
    if (!categories) return BuiltInCategoryName(id);
    const ElementPtr category = categories->FindElementAttribute2("ID", id);
    if (!category) throw Error(ErrorNumber::ObjectNotSet);
    return category->FindAttributeValue("NAME");
}

ElementPtr DatabaseHost::UpdateServers() {
    const App& app = m_Parts.Program;
    if (!app.Settings) throw Error(ErrorNumber::ObjectNotSet);
    return app.Settings->GlobalsFindXMLElement("SERVERS", "NAME", "EVILDBSVR");
}

std::unique_ptr<Sender> DatabaseHost::MakeUpdateSender() {
    std::unique_ptr<Sender> sender = m_Parts.MakeSender();
    sender->Key(GetClientKey(m_Parts.Program));
    return sender;
}

}  // namespace tb
