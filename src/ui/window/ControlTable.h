// Makes table entries of member functions: Property<&Form::Caption, &Form::SetCaption>("Caption"),
// Method<&Form::Move>("Move"). Only the sources of control classes include this.
#pragma once

#include <type_traits>
#include <utility>

#include "ui/window/Control.h"

namespace tb {

namespace control_table {

template <typename Type>
constexpr Value::Kind KindOf() {
    if constexpr (std::is_same_v<Type, bool>) {
        return Value::Kind::Boolean;
    } else if constexpr (std::is_same_v<Type, Text>) {
        return Value::Kind::String;
    } else if constexpr (std::is_same_v<Type, PictureRef>) {
        return Value::Kind::Picture;
    } else if constexpr (std::is_same_v<Type, double>) {
        return Value::Kind::Decimal;
    } else {
        static_assert(std::is_same_v<Type, std::int32_t> || std::is_same_v<Type, Color>);
        return Value::Kind::Number;
    }
}

template <typename Type>
struct IsOptional : std::false_type {};
template <typename Type>
struct IsOptional<std::optional<Type>> : std::true_type {};

template <typename Function>
struct Signature;

template <typename Class, typename Result, typename... Arguments>
struct Signature<Result (Class::*)(Arguments...)> {
    using Object = Class;
    using Returned = std::decay_t<Result>;

    static constexpr size_t Most = sizeof...(Arguments);
    static constexpr size_t Least = (size_t{0} + ... + (IsOptional<std::decay_t<Arguments>>::value ? 0 : 1));

    template <auto Function, size_t... Position>
    static Value Call(Control& control, const std::vector<Value>& given, std::index_sequence<Position...>) {
        static const Value missing;
        const auto argument = [&](size_t index) -> const Value& {
            return index < given.size() ? given[index] : missing;
        };
        auto& object = static_cast<Class&>(control);
        if constexpr (std::is_void_v<Result>) {
            (object.*Function)(Convert<std::decay_t<Arguments>>(argument(Position))...);
            return {};
        } else {
            return (object.*Function)(Convert<std::decay_t<Arguments>>(argument(Position))...);
        }
    }
};

template <typename Class, typename Result, typename... Arguments>
struct Signature<Result (Class::*)(Arguments...) const> : Signature<Result (Class::*)(Arguments...)> {};

template <typename Setter>
struct SetterArgument;
template <typename Class, typename Argument>
struct SetterArgument<void (Class::*)(Argument)> {
    using Object = Class;
    using Type = std::decay_t<Argument>;
};

}  // namespace control_table

template <auto Getter>
PropertyEntry ReadOnly(const char* name) {
    using Signed = control_table::Signature<decltype(Getter)>;
    return {name, control_table::KindOf<typename Signed::Returned>(),
            [](const Control& control) -> Value {
                return (static_cast<const typename Signed::Object&>(control).*Getter)();
            },
            nullptr};
}

template <auto Getter, auto Setter>
PropertyEntry Property(const char* name) {
    using Taken = control_table::SetterArgument<decltype(Setter)>;
    PropertyEntry entry = ReadOnly<Getter>(name);
    entry.Set = [](Control& control, const Value& value) {
        (static_cast<typename Taken::Object&>(control).*Setter)(Convert<typename Taken::Type>(value));
    };
    return entry;
}

template <auto Function>
MethodEntry Method(const char* name) {
    using Signed = control_table::Signature<decltype(Function)>;
    return {name, Signed::Least, Signed::Most, [](Control& control, const std::vector<Value>& arguments) {
                return Signed::template Call<Function>(control, arguments, std::make_index_sequence<Signed::Most>());
            }};
}

}  // namespace tb
