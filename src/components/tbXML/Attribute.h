// One attribute of an element: a name and a value.
#pragma once

#include <utility>

#include "base/text.h"

namespace tb {

class Attribute {
public:
    Attribute() = default;
    Attribute(Text name, Text value) : m_Name(std::move(name)), m_Value(std::move(value)) {}

    const Text& Name() const { return m_Name; }
    void Name(Text name) { m_Name = std::move(name); }

    const Text& Value() const { return m_Value; }
    void Value(Text value) { m_Value = std::move(value); }

private:
    Text m_Name;
    Text m_Value;
};

}  // namespace tb
