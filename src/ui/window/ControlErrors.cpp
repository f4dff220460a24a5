#include "ui/window/ControlErrors.h"

namespace tb {

namespace {

const char* Description(ControlErrorNumber number) {
    switch (number) {
    case ControlErrorNumber::AlreadyLoaded: return "Object already loaded";
    case ControlErrorNumber::InvalidValue: return "Invalid property value";
    case ControlErrorNumber::NotAtRunTime: return "Property can't be set at run time";
    case ControlErrorNumber::WrongArgumentCount: return "Wrong number of arguments or invalid property assignment";
    case ControlErrorNumber::NameInUse: return "There is already a control with this name";
    }
    return "";
}

}  // namespace

RuntimeError Error(ControlErrorNumber number) { return {static_cast<std::int32_t>(number), Description(number)}; }

}  // namespace tb
