// The C face of tbSender.dll, version 1, exported as tbSender_Face. SenderLibrary.h is what callers use.
#pragma once

#include <filesystem>

#include "components/faces/Face.h"

namespace tb {

struct tbSenderFace {
    static constexpr std::uint32_t Version = 1;
    static constexpr const char* Component = "tbSender";
    static constexpr const char* File = "tbSender.dll";
    static constexpr const char* Entry = "tbSender_Face";

    struct Bytes {
        const char* Start;
        std::size_t Size;
    };
    // A path in the characters of the system.
    struct Path {
        const std::filesystem::path::value_type* Start;
        std::size_t Size;
    };
    // What an operation works on. It lasts as long as the operation runs.
    struct Call {
        // The server element as XML text; empty for none.
        Bytes Server;
        Bytes Page;
        Bytes Key;
        std::uint64_t ReplyLimit;
        std::int32_t Timeout;
    };
    // Asked again and again while an operation waits: any number but 0 ends it.
    using IsCancelled = std::int32_t (*)(void* context) noexcept;

    // The transport and what `context` points to must outlive the operations that run. Others may begin and end while
    // one waits.
    void (*Open)(Bytes userAgent, IsCancelled isCancelled, void* context, void** transport,
                 FaceFailure* failure) noexcept;
    void (*Close)(void* transport) noexcept;

    // 0 in `isOnline` when the system knows that it has no network.
    void (*IsOnline)(void* transport, std::int32_t* isOnline, FaceFailure* failure) noexcept;
    // As Sender tells (components/tbSender/Sender.h). 1 in `done`, and `take` gets the reply, the head, or nothing for
    // a file; else 0, and it gets the error text.
    void (*PostRequest)(void* transport, const Call* call, Bytes body, FaceTake take, void* target, std::int32_t* done,
                        FaceFailure* failure) noexcept;
    void (*GetHead)(void* transport, const Call* call, FaceTake take, void* target, std::int32_t* done,
                    FaceFailure* failure) noexcept;
    void (*DownloadFile)(void* transport, const Call* call, Path file, FaceTake take, void* target, std::int32_t* done,
                         FaceFailure* failure) noexcept;
};

}  // namespace tb
