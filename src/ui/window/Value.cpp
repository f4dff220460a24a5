#include "ui/window/Value.h"

#include <cmath>
#include <limits>

#include "base/errors.h"
#include "base/numbers.h"

namespace tb {

namespace {

bool ReadsAsTrue(TextView text) {
    const Text word = LowerCase(Trim(text));
    if (word == "true" || word == "false") return word == "true";
    return ToDouble(text) != 0;
}

}  // namespace

std::int32_t Value::AsNumber() const {
    switch (What()) {
    case Kind::Empty: return 0;
    case Kind::Number: return std::get<std::int32_t>(m_Content);
    case Kind::Decimal: return RoundToInt32(std::get<double>(m_Content));
    case Kind::Boolean: return std::get<bool>(m_Content) ? -1 : 0;
    case Kind::String: return ToInt32(std::get<Text>(m_Content));
    case Kind::Picture: break;
    }
    throw Error(ErrorNumber::TypeMismatch);
}

double Value::AsDecimal() const {
    if (What() == Kind::Decimal) return std::get<double>(m_Content);
    if (What() == Kind::String) return ToDouble(std::get<Text>(m_Content));
    return AsNumber();
}

Color Value::AsColor() const {
    constexpr double Range = 4294967296.0;
    if (What() == Kind::Number) return {std::get<std::int32_t>(m_Content)};
    const double number = std::nearbyint(AsDecimal());
    if (number >= Range) throw Error(ErrorNumber::Overflow);
    return {RoundToInt32(number > std::numeric_limits<std::int32_t>::max() ? number - Range : number)};
}

bool Value::AsBoolean() const {
    if (What() == Kind::Decimal) return std::get<double>(m_Content) != 0;
    if (What() == Kind::Boolean) return std::get<bool>(m_Content);
    if (What() == Kind::String) return ReadsAsTrue(std::get<Text>(m_Content));
    return AsNumber() != 0;
}

Text Value::AsText() const {
    switch (What()) {
    case Kind::Empty: return {};
    case Kind::Number: return std::to_string(std::get<std::int32_t>(m_Content));
    case Kind::Decimal: return ToText(std::get<double>(m_Content));
    case Kind::Boolean: return ToText(std::get<bool>(m_Content));
    case Kind::String: return std::get<Text>(m_Content);
    case Kind::Picture: break;
    }
    throw Error(ErrorNumber::TypeMismatch);
}

PictureRef Value::AsPicture() const {
    if (What() == Kind::Empty) return nullptr;
    if (What() == Kind::Picture) return std::get<PictureRef>(m_Content);
    throw Error(ErrorNumber::TypeMismatch);
}

}  // namespace tb
