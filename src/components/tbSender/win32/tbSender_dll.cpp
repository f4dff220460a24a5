// What tbSender.dll exports: the face over the system's network, chance and files.
#include "components/tbSender/SenderTransport.h"
#include "platform/win32/Win32Files.h"
#include "platform/win32/Win32Http.h"
#include "platform/win32/Win32Random.h"

namespace {

tb::SenderSeams MakeSeams(const tb::Text& userAgent) {
    return {std::make_unique<tb::Win32Http>(userAgent), std::make_unique<tb::Win32Random>(),
            std::make_unique<tb::Win32Files>()};
}

}  // namespace

extern "C" __declspec(dllexport) const void* tbSender_Face(std::uint32_t version) {
    return tb::OfferSenderFace<&MakeSeams>(version);
}
