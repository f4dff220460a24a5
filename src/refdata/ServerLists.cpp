#include "refdata/ServerLists.h"

#include "base/errors.h"
#include "base/numbers.h"

namespace tb {

namespace {

constexpr std::int16_t BuiltInCount = 10;
constexpr const char* BuiltInName = "DefaultsSVR";
constexpr const char* BuiltInPlaceholder = "{?}";

constexpr std::int32_t DivisionByZero = 11;

void AddServer(Element& service, std::int16_t count, const Text& address) {
    if (count == 0) throw RuntimeError(DivisionByZero, "Division by zero");
    auto server = std::make_shared<Element>("Server", address);
    server->AddAttribute({"WEIGHT", ToText(100.0 / count)});
    server->AddAttribute({"ACTIVE", "Y"});
    service.AddElement(std::move(server));
}

}  // namespace

ElementPtr MakeServerElement(std::int16_t Count, const Text& Name, const Text& Template, const Text& Single,
                             const Text& Placeholder) {
    auto service = std::make_shared<Element>("ELEMENT");
    service->AddAttribute({"Name", Name});
    if (!Single.empty()) AddServer(*service, Count, Single);
    if (Template.empty()) return service;
    for (std::int32_t number = 1; number <= Count; ++number) {
        AddServer(*service, Count, ReplaceAll(Template, Placeholder, std::to_string(number)));
    }
    return service;
}

ElementPtr BuiltInServers(const App& app) {
    return MakeServerElement(BuiltInCount, BuiltInName, app.Product.ServerTemplate, {}, BuiltInPlaceholder);
}

bool ServerLists::MakeServersArray(const Text& Section, const Text& Name, const Text& Default,
                                   std::vector<Text>& Result) noexcept {
    return TrapOr(
        false,
        [&] {
            Result.assign(1, {});
            const ElementPtr service =
                m_Access.Settings()->GlobalsFindXMLElement(UpperCase(Section), "NAME", UpperCase(Name));
            if (service == nullptr) {
                Result[0] = Default;
            } else {
                std::vector<Text> servers;
                for (const ElementPtr& server : *service) {
                    if (server->FindAttributeValue("ACTIVE") == "Y") servers.push_back(server->Body());
                }
                Shuffle(servers);
                if (!servers.empty()) Result = std::move(servers);
            }
            return !Result[0].empty();
        },
        [&](const RuntimeError& error) {
            m_Access.Log.WriteLog("Error Make Servers Array: " + error.Line(), LogLevel::Always);
        });
}

// Over the full range each time, with the rounding that gives its ends half the chance: the order that servers have
// always been tried in.
void ServerLists::Shuffle(std::vector<Text>& servers) const {
    if (servers.empty()) return;
    const auto highest = static_cast<double>(servers.size() - 1);
    for (size_t place = servers.size(); place-- > 0;) {
        const std::int32_t other = RoundToInt32(m_Access.Program.System.Random.Next() * highest);
        std::swap(servers[place], servers[static_cast<size_t>(other)]);
    }
}

bool ServerLists::IsOnline() noexcept {
    return TrapOr(
        false, [&] { return m_Access.MakeSender()->IsOnline(); },
        [](const RuntimeError&) { /* nothing to ask with */ });
}

}  // namespace tb
