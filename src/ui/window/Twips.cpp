#include "ui/window/Twips.h"

#include "base/numbers.h"

namespace tb {

namespace {

constexpr double TwipsPerInch = 1440;

}  // namespace

std::int32_t TwipScale::ToPixels(Twips twips) const { return RoundToInt32(twips * (m_Dpi / TwipsPerInch)); }

Twips TwipScale::ToTwips(std::int32_t pixels) const { return RoundToInt32(pixels * (TwipsPerInch / m_Dpi)); }

}  // namespace tb
