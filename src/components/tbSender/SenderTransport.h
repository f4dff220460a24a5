// The component's side of its face: tbSender over the seams of a system.
#pragma once

#include <memory>

#include "components/tbSender/tbSenderFace.h"
#include "platform/Files.h"
#include "platform/Http.h"
#include "platform/Random.h"

namespace tb {

struct SenderSeams {
    std::unique_ptr<tb::Http> Http;
    std::unique_ptr<tb::Random> Random;
    std::unique_ptr<tb::Files> Files;
};

// What is behind the `transport` of the face.
class SenderTransport {
public:
    SenderTransport(SenderSeams seams, tbSenderFace::IsCancelled isCancelled, void* context)
        : m_Seams(std::move(seams)), m_IsCancelled(isCancelled), m_Context(context) {}

    // The table whose Open is `open`; the other functions are the same over any seams.
    static tbSenderFace FaceOpenedBy(decltype(tbSenderFace::Open) open);

private:
    template <typename Ask>
    void Run(const tbSenderFace::Call& call, FaceTake take, void* target, std::int32_t& done, Ask ask) const;
    static void Close(void* transport) noexcept;
    static void IsOnline(void* transport, std::int32_t* isOnline, FaceFailure* failure) noexcept;
    static void PostRequest(void* transport, const tbSenderFace::Call* call, tbSenderFace::Bytes body, FaceTake take,
                            void* target, std::int32_t* done, FaceFailure* failure) noexcept;
    static void GetHead(void* transport, const tbSenderFace::Call* call, FaceTake take, void* target,
                        std::int32_t* done, FaceFailure* failure) noexcept;
    static void DownloadFile(void* transport, const tbSenderFace::Call* call, tbSenderFace::Path file, FaceTake take,
                             void* target, std::int32_t* done, FaceFailure* failure) noexcept;

    const SenderSeams m_Seams;
    const tbSenderFace::IsCancelled m_IsCancelled;
    void* const m_Context;
};

// What the component's one function answers. Each Open makes seams of its own: `Make` is a SenderSeams(const Text&)
// that is given the user agent.
template <auto Make>
const tbSenderFace* OfferSenderFace(std::uint32_t version) noexcept {
    static const tbSenderFace face =
        SenderTransport::FaceOpenedBy([](tbSenderFace::Bytes userAgent, tbSenderFace::IsCancelled isCancelled,
                                         void* context, void** transport, FaceFailure* failure) noexcept {
            AtFace(failure, [&] {
                SenderSeams seams = Make(Text(userAgent.Start, userAgent.Size));
                *transport = std::make_unique<SenderTransport>(std::move(seams), isCancelled, context).release();
            });
        });
    return version == tbSenderFace::Version ? &face : nullptr;
}

}  // namespace tb
