#include "ui/skin/Tokens.h"

namespace tb {

namespace {

using Meaning = Text (*)(const App& app);

Text FromVersion(const App& app, const char* name) {
    const auto strings = app.System.FileVersions.Strings(app.System.Processes.Executable(), {name});
    return strings && !strings->empty() ? strings->front() : Text();
}

constexpr std::pair<const char*, Meaning> Tokens[] = {
    {"{AppProductName}", [](const App& app) { return app.Product.ProductName; }},
    {"{AppCompanyName}", [](const App& app) { return FromVersion(app, "CompanyName"); }},
    {"{AppComments}", [](const App& app) { return FromVersion(app, "Comments"); }},
    {"{AppCopyright}", [](const App& app) { return FromVersion(app, "LegalCopyright"); }},
    {"{CrLf}", [](const App&) { return Text("\r\n"); }},
    {"{AppPath}", [](const App& app) { return app.AppPath(); }},
    {"{AppDataPath}", [](const App& app) { return app.AppPath() + "\\Data"; }},
    {"{AppURL}", [](const App& app) { return app.HomeURL; }},
};

}  // namespace

Text ExpandTokens(const App& app, Text text) {
    for (const auto& [token, meaning] : Tokens) {
        if (text.find(token) != Text::npos) text = ReplaceAll(text, token, meaning(app));
    }
    return text;
}

}  // namespace tb
