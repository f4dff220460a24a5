#include "components/tbSender/SenderTransport.h"

#include "components/tbSender/tbSender.h"
#include "components/tbXML/XmlParser.h"

namespace tb {

namespace {

using Bytes = tbSenderFace::Bytes;

Text TextOf(Bytes bytes) { return {bytes.Start, bytes.Size}; }

}  // namespace

// One operation with a sender of its own. `ask` fills in the text that it gives, or returns an error text.
template <typename Ask>
void SenderTransport::Run(const tbSenderFace::Call& call, FaceTake take, void* target, std::int32_t& done,
                          Ask ask) const {
    tbSender sender({*m_Seams.Http, *m_Seams.Random, *m_Seams.Files,
                     [isCancelled = m_IsCancelled, context = m_Context] { return isCancelled(context) != 0; }});
    sender.Timeout(call.Timeout);
    sender.Key(TextOf(call.Key));
    sender.ReplyLimit(call.ReplyLimit);
    const ElementPtr server = call.Server.Size == 0 ? nullptr : ParseXml(TextOf(call.Server));
    Text given;
    const Text error = ask(sender, server, TextOf(call.Page), given);
    done = error.empty() ? 1 : 0;
    const Text& text = error.empty() ? given : error;
    take(target, text.data(), text.size());
}

void SenderTransport::Close(void* transport) noexcept { delete static_cast<SenderTransport*>(transport); }

void SenderTransport::IsOnline(void* transport, std::int32_t* isOnline, FaceFailure* failure) noexcept {
    AtFace(failure, [&] { *isOnline = ObjectOf<SenderTransport>(transport).m_Seams.Http->IsConnected() ? 1 : 0; });
}

void SenderTransport::PostRequest(void* transport, const tbSenderFace::Call* call, Bytes body, FaceTake take,
                                  void* target, std::int32_t* done, FaceFailure* failure) noexcept {
    const auto ask = [&](Sender& sender, const ElementPtr& server, const Text& page, Text& reply) {
        return sender.PostRequest(server, page, TextOf(body), reply, {});
    };
    AtFace(failure, [&] { ObjectOf<SenderTransport>(transport).Run(*call, take, target, *done, ask); });
}

void SenderTransport::GetHead(void* transport, const tbSenderFace::Call* call, FaceTake take, void* target,
                              std::int32_t* done, FaceFailure* failure) noexcept {
    const auto ask = [](Sender& sender, const ElementPtr& server, const Text& page, Text& text) {
        ResponseHead head;
        sender.GetHead(server, page, {}, head);
        text = std::move(head.Text);
        return Text();
    };
    AtFace(failure, [&] { ObjectOf<SenderTransport>(transport).Run(*call, take, target, *done, ask); });
}

void SenderTransport::DownloadFile(void* transport, const tbSenderFace::Call* call, tbSenderFace::Path file,
                                   FaceTake take, void* target, std::int32_t* done, FaceFailure* failure) noexcept {
    const auto ask = [&](Sender& sender, const ElementPtr& server, const Text& page, Text&) {
        return sender.DownloadFile(server, page, {}, std::filesystem::path::string_type(file.Start, file.Size));
    };
    AtFace(failure, [&] { ObjectOf<SenderTransport>(transport).Run(*call, take, target, *done, ask); });
}

tbSenderFace SenderTransport::FaceOpenedBy(decltype(tbSenderFace::Open) open) {
    return {open, Close, IsOnline, PostRequest, GetHead, DownloadFile};
}

}  // namespace tb
