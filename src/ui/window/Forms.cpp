#include "ui/window/Forms.h"

#include <algorithm>
#include <cstdint>

#include "base/numbers.h"
#include "ui/window/Form.h"

namespace tb {

namespace {

// What is reported where there is no screen.
constexpr TwipSize SizeWithoutScreen{15360, 11520};
// Of a letter, in thousandths of its font's size.
constexpr double LetterWidth = 600;
constexpr double LineHeight = 1200;
constexpr double TwipsPerPoint = 20;

// How far a number lies outside of a range.
std::int64_t Outside(std::int64_t number, std::int64_t first, std::int64_t size) {
    return number < first ? first - number : std::max<std::int64_t>(0, number - (first + size - 1));
}

}  // namespace

const Screen& ScreenAt(const std::vector<Screen>& screens, const TwipPoint& point) {
    const auto distance = [&](const Screen& screen) {
        return Outside(point.X, screen.Whole.Left, screen.Whole.Width) +
               Outside(point.Y, screen.Whole.Top, screen.Whole.Height);
    };
    return *std::min_element(screens.begin(), screens.end(),
                             [&](const Screen& one, const Screen& other) { return distance(one) < distance(other); });
}

TwipRect RoomAround(const std::vector<Screen>& screens, const TwipRect& area) {
    const auto middle = [](std::int64_t first, std::int64_t size) {
        return static_cast<Twips>(std::clamp<std::int64_t>(first + size / 2, INT32_MIN, INT32_MAX));
    };
    return ScreenAt(screens, {middle(area.Left, area.Width), middle(area.Top, area.Height)}).Room;
}

TwipSize Forms::ScreenSize() const { return m_System != nullptr ? m_System->ScreenSize() : SizeWithoutScreen; }

TwipScale Forms::Scale() const { return m_System != nullptr ? m_System->Scale() : TwipScale(); }

std::vector<Screen> Forms::Screens() const {
    if (m_System != nullptr) return m_System->Screens();
    const TwipRect whole{0, 0, SizeWithoutScreen.Width, SizeWithoutScreen.Height};
    return {{whole, whole}};
}

TwipPoint Forms::Pointer() const { return m_System != nullptr ? m_System->Pointer() : TwipPoint(); }

TwipSize Forms::MeasureText(const Text& text, const Font& font, Twips width) const {
    if (m_System != nullptr) return m_System->MeasureText(text, font, width);
    const double letter = font.Size * TwipsPerPoint * LetterWidth / 1000;
    const size_t lettersInLine = width > 0 ? static_cast<size_t>(std::max(1.0, width / letter)) : text.size() + 1;
    size_t widest = 0;
    size_t lines = 0;
    for (const TextView part : SplitViews(text, '\n')) {
        const TextView line = part.ends_with('\r') ? part.substr(0, part.size() - 1) : part;
        widest = std::max(widest, std::min(line.size(), lettersInLine));
        lines += line.empty() ? 1 : (line.size() + lettersInLine - 1) / lettersInLine;
    }
    return {RoundToInt32(static_cast<double>(widest) * letter),
            RoundToInt32(static_cast<double>(lines) * font.Size * TwipsPerPoint * LineHeight / 1000)};
}

PictureRef Forms::Decode(const Text& bytes) const { return m_System != nullptr ? m_System->Decode(bytes) : nullptr; }

bool Forms::HighContrast() const { return m_System != nullptr && m_System->HighContrast(); }

Color Forms::Resolved(Color color) const {
    if (m_System != nullptr) return m_System->Resolved(color);
    return color.IsSystem() ? Color() : color;
}

void Forms::UnloadAll(UnloadMode mode) {
    const std::vector<Form*> loaded = m_Loaded;
    for (size_t index = loaded.size(); index-- > 0;) {
        // One may have taken others along.
        const bool isThere = std::find(m_Loaded.begin(), m_Loaded.end(), loaded[index]) != m_Loaded.end();
        if (isThere) loaded[index]->Unload(mode);
    }
}

void Forms::Add(Form& form) { m_Loaded.push_back(&form); }

void Forms::Remove(Form& form, bool raise) {
    EndModal(form);
    for (Modal& modal : m_Modals) {
        modal.Blocked.erase(std::remove(modal.Blocked.begin(), modal.Blocked.end(), &form), modal.Blocked.end());
    }
    const auto place = std::find(m_Loaded.begin(), m_Loaded.end(), &form);
    if (place == m_Loaded.end()) return;
    m_Loaded.erase(place);
    if (raise && m_Loaded.empty()) LastUnloadedEvent.Raise();
}

void Forms::BeginModal(Form& form) {
    Modal modal{&form, {}};
    for (Form* const other : m_Loaded) {
        if (other != &form && other->Visible()) modal.Blocked.push_back(other);
    }
    m_Modals.push_back(modal);
    for (Form* const other : modal.Blocked) other->ApplyEnabled();
}

void Forms::EndModal(Form& form) {
    const auto shown = [&](const Modal& modal) { return modal.Shown == &form; };
    const auto place = std::find_if(m_Modals.begin(), m_Modals.end(), shown);
    if (place == m_Modals.end()) return;
    const std::vector<Form*> blocked = std::move(place->Blocked);
    m_Modals.erase(place);
    for (Form* const other : blocked) other->ApplyEnabled();
}

bool Forms::IsBlocked(const Form& form) const {
    return std::any_of(m_Modals.begin(), m_Modals.end(), [&](const Modal& modal) {
        return std::find(modal.Blocked.begin(), modal.Blocked.end(), &form) != modal.Blocked.end();
    });
}

}  // namespace tb
