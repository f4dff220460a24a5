// A value on its way into or out of a property or method that is reached by its name.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <variant>

#include "ui/window/Color.h"
#include "ui/window/Picture.h"

namespace tb {

class Value {
public:
    enum class Kind { Empty, Number, Decimal, Boolean, String, Picture };

    Value() = default;
    Value(std::int32_t number) : m_Content(number) {}
    Value(double number) : m_Content(number) {}
    Value(bool flag) : m_Content(flag) {}
    Value(Color color) : m_Content(color.Bits()) {}
    Value(Text text) : m_Content(std::move(text)) {}
    Value(const char* text) : m_Content(Text(text)) {}
    Value(PictureRef picture) : m_Content(std::move(picture)) {}

    Kind What() const { return static_cast<Kind>(m_Content.index()); }

    // The value as another kind; error 13 for what cannot be converted, 6 for what does not fit.
    // Empty is 0, False, the empty text and no picture. True is -1 as a number and "True" as a text.
    // A number with a fraction is rounded, halves to the even one.
    std::int32_t AsNumber() const;
    double AsDecimal() const;
    // A number, or the decimal text of one, from the least negative one to 4294967295.
    Color AsColor() const;
    // A number is True unless it is 0; a text reads as "True" or "False" in any case, or as a number.
    bool AsBoolean() const;
    Text AsText() const;
    PictureRef AsPicture() const;

private:
    // In the order of Kind.
    std::variant<std::monostate, std::int32_t, double, bool, Text, PictureRef> m_Content;
};

// The value as the type that a setter or method takes. An optional is empty for Empty.
template <typename Type>
Type Convert(const Value& value) {
    if constexpr (std::is_same_v<Type, bool>) {
        return value.AsBoolean();
    } else if constexpr (std::is_same_v<Type, std::int32_t>) {
        return value.AsNumber();
    } else if constexpr (std::is_same_v<Type, double>) {
        return value.AsDecimal();
    } else if constexpr (std::is_same_v<Type, Color>) {
        return value.AsColor();
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
