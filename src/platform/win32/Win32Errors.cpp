#include "platform/win32/Win32Errors.h"

namespace tb {

ErrorNumber FileErrorNumber(DWORD code) {
    switch (code) {
    case ERROR_FILE_NOT_FOUND: return ErrorNumber::FileNotFound;
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_DRIVE:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME: return ErrorNumber::PathNotFound;
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
    case ERROR_WRITE_PROTECT:
    case ERROR_DELETE_PENDING:
    case ERROR_USER_MAPPED_FILE: return ErrorNumber::PermissionDenied;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
    case ERROR_FILE_TOO_LARGE: return ErrorNumber::DiskFull;
    case ERROR_CRC:
    case ERROR_NOT_READY:
    case ERROR_GEN_FAILURE:
    case ERROR_READ_FAULT:
    case ERROR_WRITE_FAULT:
    case ERROR_IO_DEVICE: return ErrorNumber::DeviceIO;
    case ERROR_NOT_ENOUGH_MEMORY:
    case ERROR_OUTOFMEMORY: return ErrorNumber::OutOfMemory;
    default: return ErrorNumber::PathFileAccess;
    }
}

RuntimeError SystemError(const char* call, DWORD code) {
    const RuntimeError internal = Error(ErrorNumber::Internal);
    return {internal.Number, internal.Description + " (" + call + ", code " + std::to_string(code) + ")"};
}

}  // namespace tb
