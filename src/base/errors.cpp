#include "base/errors.h"

#include <array>
#include <new>

namespace tb {

namespace {

struct Entry {
    ErrorNumber Number;
    const char* Text;
};

constexpr std::array Table{
    Entry{ErrorNumber::InvalidCall, "Invalid procedure call or argument"},
    Entry{ErrorNumber::Overflow, "Overflow"},
    Entry{ErrorNumber::OutOfMemory, "Out of memory"},
    Entry{ErrorNumber::Subscript, "Subscript out of range"},
    Entry{ErrorNumber::TypeMismatch, "Type mismatch"},
    Entry{ErrorNumber::Internal, "Internal error"},
    Entry{ErrorNumber::FileNotFound, "File not found"},
    Entry{ErrorNumber::DeviceIO, "Device I/O error"},
    Entry{ErrorNumber::DiskFull, "Disk full"},
    Entry{ErrorNumber::EndOfFile, "Input past end of file"},
    Entry{ErrorNumber::PermissionDenied, "Permission denied"},
    Entry{ErrorNumber::PathFileAccess, "Path/File access error"},
    Entry{ErrorNumber::PathNotFound, "Path not found"},
    Entry{ErrorNumber::ObjectNotSet, "Object variable or With block variable not set"},
    Entry{ErrorNumber::NoSuchMember, "Object doesn't support this property or method"},
    Entry{ErrorNumber::DuplicateKey, "This key is already associated with an element of this collection"},
};

}  // namespace

Text ErrorText(std::int32_t number) {
    for (const Entry& entry : Table) {
        if (static_cast<std::int32_t>(entry.Number) == number) return entry.Text;
    }
    return "Application-defined or object-defined error";
}

Text RuntimeError::Line() const { return std::to_string(Number) + " " + Description; }

RuntimeError Error(ErrorNumber number) {
    const auto value = static_cast<std::int32_t>(number);
    return {value, ErrorText(value)};
}

RuntimeError InputError(Text description) { return {InputErrorNumber, std::move(description)}; }

RuntimeError CurrentError() noexcept {
    try {
        throw;
    } catch (const RuntimeError& error) {
        return error;
    } catch (const std::bad_alloc&) {
        return Error(ErrorNumber::OutOfMemory);
    } catch (...) {
        return Error(ErrorNumber::Internal);
    }
}

}  // namespace tb
