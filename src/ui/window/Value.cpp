#include "ui/window/Value.h"

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
    case Kind::Boolean: return std::get<bool>(m_Content) ? -1 : 0;
    case Kind::String: return ToInt32(std::get<Text>(m_Content));
    case Kind::Picture: break;
    }
    throw Error(ErrorNumber::TypeMismatch);
}

bool Value::AsBoolean() const {
    if (What() == Kind::Boolean) return std::get<bool>(m_Content);
    if (What() == Kind::String) return ReadsAsTrue(std::get<Text>(m_Content));
    return AsNumber() != 0;
}

Text Value::AsText() const {
    switch (What()) {
    case Kind::Empty: return {};
    case Kind::Number: return std::to_string(std::get<std::int32_t>(m_Content));
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
