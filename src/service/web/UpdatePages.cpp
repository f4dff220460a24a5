#include <algorithm>
#include <array>

#include "refdata/manifest/SignedManifest.h"
#include "service/web/ServicePages.h"

namespace tb {

namespace {

// Clients ask for the manifest by POST, with nothing in it.
constexpr size_t SmallForm = 4096;
// More digits are no number of a version.
constexpr size_t MostDigits = 10;

constexpr TextView TestFolder = "/Versions/";

enum class Sheet { Manifest, Framed, Signature };
constexpr std::array<std::pair<TextView, Sheet>, 3> Sheets{std::pair{TextView("updates.xml"), Sheet::Manifest},
                                                           std::pair{TextView("updates.bin"), Sheet::Framed},
                                                           std::pair{TextView("updates.xml.sig"), Sheet::Signature}};

Reply Show(UpdateCache& updates, const Text& test, Sheet sheet) {
    const auto shown = updates.Latest(test);
    if (sheet == Sheet::Signature && (!shown || shown->Update.Signature.empty())) {
        return PlainReply(404, shown ? "This update is not signed." : "No update is published here.");
    }
    // An empty manifest says that there is none. Anything else than a success would make a client ask all its servers,
    // for the other form of it too, and log each.
    if (!shown) return {200, "text/xml", nullptr, {}};
    // The reply keeps the version alive that its body is a part of.
    if (sheet == Sheet::Framed) return FramedReply({shown, &shown->Framed});
    if (sheet == Sheet::Manifest) return {200, "text/xml", {shown, &shown->Update.Manifest}, {}};
    return {200, "text/plain", {shown, &shown->Update.Signature}, {}};
}

// The two words of "/Versions/NAME/PAGE", or the first of "/N/FILE" and its second; nothing for any other path.
std::optional<std::pair<Text, Text>> TwoWords(TextView path, TextView folder) {
    if (!path.starts_with(folder)) return std::nullopt;
    path.remove_prefix(folder.size());
    const size_t end = path.find('/');
    if (end == 0 || end == TextView::npos || path.find('/', end + 1) != TextView::npos) return std::nullopt;
    return std::pair{Text(path.substr(0, end)), Text(path.substr(end + 1))};
}

const Sheet* SheetOf(TextView name) {
    const auto found =
        std::find_if(Sheets.begin(), Sheets.end(), [&](const auto& sheet) { return sheet.first == name; });
    return found == Sheets.end() ? nullptr : &found->second;
}

bool IsNumber(const Text& text) {
    return text.size() <= MostDigits && text.find_first_not_of("0123456789") == Text::npos && text[0] != '0';
}

Page TestPages(UpdateCache& updates) {
    Page page{Text(TestFolder), true, true, SmallForm, [&updates](const Question& question) {
                  const auto words = TwoWords(question.Path, TestFolder);
                  return Show(updates, words->first, *SheetOf(words->second));
              }};
    page.Owns = [](const Text& path) {
        const auto words = TwoWords(path, TestFolder);
        return words && SheetOf(words->second) != nullptr;
    };
    return page;
}

Page FilePages(UpdateCache& updates) {
    Page page{"/", true, false, 0, [&updates](const Question& question) {
                  const auto words = TwoWords(question.Path, "/");
                  auto content = updates.File(std::stoll(words->first), words->second);
                  if (!content) return PlainReply(404, "There is no such file.");
                  return Reply{200, "application/octet-stream", std::move(content), {}};
              }};
    page.Owns = [](const Text& path) {
        const auto words = TwoWords(path, "/");
        return words && IsNumber(words->first) && IsPlainFileName(words->second);
    };
    return page;
}

}  // namespace

void AddUpdatePages(Pages& pages, UpdateCache& updates) {
    for (const auto& [name, sheet] : Sheets) {
        pages.push_back({"/" + Text(name), true, true, SmallForm,
                         [&updates, sheet = sheet](const Question&) { return Show(updates, {}, sheet); }});
    }
    pages.push_back(TestPages(updates));
    pages.push_back(FilePages(updates));
}

}  // namespace tb
