#include "components/TrawlbeamHelper/win32/HostAddresses.h"

#include <winsock2.h>
#include <ws2tcpip.h>

#include <atomic>
#include <memory>

#include "base/errors.h"
#include "platform/win32/Handle.h"
#include "platform/win32/Win32Text.h"

namespace tb {

namespace {

constexpr int MostAddresses = 16;
// A resolver that hangs must not collect a thread per page.
constexpr int MostLookups = 8;
std::atomic<int> RunningLookups{0};

// One question, owned by both threads.
struct Lookup {
    std::wstring Host;
    // Written before Done is set.
    Text Addresses;
    OwnedObject Done{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
    // This library, held while the thread runs in it.
    HMODULE Module = nullptr;
};

Text Dotted(const in_addr& address) {
    const auto* const bytes = reinterpret_cast<const unsigned char*>(&address);
    return std::to_string(bytes[0]) + '.' + std::to_string(bytes[1]) + '.' + std::to_string(bytes[2]) + '.' +
           std::to_string(bytes[3]);
}

Text Resolve(const std::wstring& host) {
    WSADATA data{};
    if (WSAStartup(MAKEWORD(2, 2), &data) != 0) return {};
    ADDRINFOW wanted{};
    wanted.ai_family = AF_INET;
    wanted.ai_socktype = SOCK_STREAM;
    ADDRINFOW* found = nullptr;
    Text addresses;
    if (GetAddrInfoW(host.c_str(), nullptr, &wanted, &found) == 0) {
        int count = 0;
        for (const ADDRINFOW* next = found; next != nullptr && count < MostAddresses; next = next->ai_next, ++count) {
            if (!addresses.empty()) addresses += ' ';
            addresses += Dotted(reinterpret_cast<const sockaddr_in*>(next->ai_addr)->sin_addr);
        }
        FreeAddrInfoW(found);
    }
    WSACleanup();
    return addresses;
}

DWORD WINAPI Run(void* parameter) noexcept {
    HMODULE module = nullptr;
    {
        const std::unique_ptr<std::shared_ptr<Lookup>> owner(static_cast<std::shared_ptr<Lookup>*>(parameter));
        Lookup& lookup = **owner;
        module = lookup.Module;
        Trap([&] { lookup.Addresses = Resolve(lookup.Host); }, [](const RuntimeError&) { /* none, then */ });
        SetEvent(lookup.Done.Get());
    }
    --RunningLookups;
    FreeLibraryAndExitThread(module, 0);
}

// False when no thread can be made.
bool Start(const std::shared_ptr<Lookup>& lookup) {
    auto owner = std::make_unique<std::shared_ptr<Lookup>>(lookup);
    if (!GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS, reinterpret_cast<const wchar_t*>(&RunningLookups),
                            &lookup->Module)) {
        return false;
    }
    const OwnedObject thread(CreateThread(nullptr, 0, &Run, owner.get(), 0, nullptr));
    if (!thread) {
        FreeLibrary(lookup->Module);
        return false;
    }
    static_cast<void>(owner.release());
    return true;
}

}  // namespace

Text HostAddresses(const Text& host, unsigned milliseconds) {
    const auto lookup = std::make_shared<Lookup>();
    lookup->Host = ToSystem(host);
    if (++RunningLookups > MostLookups || !Start(lookup)) {
        --RunningLookups;
        return {};
    }
    if (WaitForSingleObject(lookup->Done.Get(), milliseconds) != WAIT_OBJECT_0) return {};
    return lookup->Addresses;
}

}  // namespace tb
