// A value on its way into or out of a property or method that is reached by its name.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <variant>

#include "base/text.h"

namespace tb {

// A picture as the bytes of an image file; windows decode it. Nobody changes it once it is made.
struct Picture {
    Text Bytes;
};
using PictureRef = std::shared_ptr<const Picture>;  // null is "no picture"

class Value {
public:
    enum class Kind { Empty, Number, Boolean, String, Picture };

    Value() = default;
    Value(std::int32_t number) : m_Content(number) {}
    Value(bool flag) : m_Content(flag) {}
    Value(Text text) : m_Content(std::move(text)) {}
    Value(const char* text) : m_Content(Text(text)) {}
    Value(PictureRef picture) : m_Content(std::move(picture)) {}

    Kind What() const { return static_cast<Kind>(m_Content.index()); }

    // The value as another kind; error 13 for what cannot be converted, 6 for what does not fit.
    // Empty is 0, False, the empty text and no picture. True is -1 as a number and "True" as a text.
    std::int32_t AsNumber() const;
    // A number is True unless it is 0; a text reads as "True" or "False" in any case, or as a number.
    bool AsBoolean() const;
    Text AsText() const;
    PictureRef AsPicture() const;

private:
    // In the order of Kind.
    std::variant<std::monostate, std::int32_t, bool, Text, PictureRef> m_Content;
};

// The value as the type that a setter or method takes. An optional is empty for Empty.
template <typename Type>
Type Convert(const Value& value) {
    if constexpr (std::is_same_v<Type, bool>) {
        return value.AsBoolean();
    } else if constexpr (std::is_same_v<Type, std::int32_t>) {
        return value.AsNumber();
    } else if constexpr (std::is_same_v<Type, Text>) {
        return value.AsText();
    } else if constexpr (std::is_same_v<Type, PictureRef>) {
        return value.AsPicture();
    } else {
        if (value.What() == Value::Kind::Empty) return Type{};
        return Convert<typename Type::value_type>(value);
    }
}

}  // namespace tb
