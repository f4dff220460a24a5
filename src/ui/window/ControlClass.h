// What can be reached by name in a control: each class of controls has one table of its properties and methods, chained
// to the table of the class it comes from. Names are compared without case.
#pragma once

#include <vector>

#include "ui/window/Value.h"

namespace tb {

class Control;

struct PropertyEntry {
    const char* Name;
    Value::Kind Kind;
    Value (*Get)(const Control& control);
    // Null for a property that cannot be set.
    void (*Set)(Control& control, const Value& value);
};

struct MethodEntry {
    const char* Name;
    // How many arguments it needs at least and takes at most.
    size_t Least;
    size_t Most;
    Value (*Call)(Control& control, const std::vector<Value>& arguments);
};

// The tables are made once and never changed.
class ControlClass {
public:
    ControlClass(const char* name, const ControlClass* base, std::vector<PropertyEntry> properties,
                 std::vector<MethodEntry> methods = {})
        : m_Name(name), m_Base(base), m_Properties(std::move(properties)), m_Methods(std::move(methods)) {}

    // The kind of control as a skin calls it: "Form", "TextBox", "Timer".
    const char* Name() const { return m_Name; }
    // Null when neither this class nor one it comes from has the name.
    const PropertyEntry* FindProperty(TextView name) const;
    const MethodEntry* FindMethod(TextView name) const;

private:
    const char* m_Name;
    const ControlClass* m_Base;
    std::vector<PropertyEntry> m_Properties;
    std::vector<MethodEntry> m_Methods;
};

}  // namespace tb
