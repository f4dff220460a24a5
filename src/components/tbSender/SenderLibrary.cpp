#include "components/tbSender/SenderLibrary.h"

#include "components/tbSender/tbSenderFace.h"

namespace tb {

namespace {

tbSenderFace::Bytes BytesOf(TextView text) { return {text.data(), text.size()}; }

// What an operation gives. A reply that finds no room here must not pass for an empty one.
struct TakenText {
    static void Take(void* target, const char* bytes, std::size_t size) noexcept {
        auto& taken = *static_cast<TakenText*>(target);
        Trap([&] { taken.Given.assign(bytes, size); },
             [&](const RuntimeError& error) { Describe(error, taken.Failure); });
    }

    Text Given;
    std::int32_t Done = 0;
    FaceFailure Failure;
};

}  // namespace

// The component's transport, opened when it is needed and closed with the last who holds this.
class SenderLibrary::Link {
public:
    explicit Link(Parts parts) : m_Parts(std::move(parts)) {}
    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;
    ~Link() {
        if (m_Transport != nullptr) m_Face->Close(m_Transport);
    }

    // Raises what FaceOf does for a component that is missing, and the component's own errors.
    template <typename... Parameters, typename... Arguments>
    void Call(void (*tbSenderFace::*function)(void*, Parameters...) noexcept, Arguments... arguments) {
        if (m_Transport == nullptr) Open();
        CallFace(m_Face->*function, m_Transport, arguments...);
    }

private:
    void Open() {
        m_Face = &FaceOf<tbSenderFace>(m_Parts.FindEntry());
        CallFace(m_Face->Open, BytesOf(m_Parts.UserAgent), &IsCancelled, static_cast<void*>(this), &m_Transport);
    }

    static std::int32_t IsCancelled(void* context) noexcept {
        const auto& isCancelled = static_cast<const Link*>(context)->m_Parts.IsCancelled;
        return TrapOr(
            0, [&] { return isCancelled && isCancelled() ? 1 : 0; }, [](const RuntimeError&) {});
    }

    const Parts m_Parts;
    const tbSenderFace* m_Face = nullptr;
    void* m_Transport = nullptr;
};

class SenderLibrary::FacedSender : public Sender {
public:
    explicit FacedSender(std::shared_ptr<Link> link) : m_Link(std::move(link)) {}

    std::int32_t Timeout() const override { return m_Timeout; }
    void Timeout(std::int32_t milliseconds) override { m_Timeout = milliseconds; }
    void Key(const Text& key) override { m_Key = key; }
    void ReplyLimit(std::uint64_t bytes) override { m_ReplyLimit = bytes; }

    Text PostRequest(const ElementPtr& Server, const Text& Page, const Text& Body, Text& Reply,
                     const Text& /*Extra*/) override {
        return Run(&tbSenderFace::PostRequest, Server, Page, Reply, BytesOf(Body));
    }
    void GetHead(const ElementPtr& Server, const Text& Page, const Text& /*Extra*/, ResponseHead& Head) override {
        Run(&tbSenderFace::GetHead, Server, Page, Head.Text);
    }
    Text DownloadFile(const ElementPtr& Server, const Text& Page, const Text& /*Extra*/,
                      const std::filesystem::path& Target) override {
        Text nothing;
        const tbSenderFace::Path file{Target.native().data(), Target.native().size()};
        return Run(&tbSenderFace::DownloadFile, Server, Page, nothing, file);
    }
    bool IsOnline() override {
        const auto ask = [&] {
            std::int32_t isOnline = 0;
            m_Link->Call(&tbSenderFace::IsOnline, &isOnline);
            return isOnline != 0;
        };
        return TrapOr(true, ask, [](const RuntimeError&) {});
    }

private:
    // What the operation gives goes into `text`; empty, or an error text. The operation may outlive this sender: it
    // holds the link and copies of what was set.
    template <typename Function, typename... Arguments>
    Text Run(Function function, const ElementPtr& server, const Text& page, Text& text, Arguments... arguments) {
        text.clear();
        Text error;
        const std::shared_ptr<Link> link = m_Link;
        const auto run = [&] {
            const Text list = server == nullptr ? Text() : server->XML();
            const Text key = m_Key;
            const tbSenderFace::Call call{BytesOf(list), BytesOf(page), BytesOf(key), m_ReplyLimit, m_Timeout};
            TakenText taken;
            link->Call(function, &call, arguments..., &TakenText::Take, static_cast<void*>(&taken), &taken.Done);
            if (taken.Failure.Number != 0) throw RuntimeError(taken.Failure.Number, taken.Failure.Description);
            (taken.Done == 0 ? error : text) = std::move(taken.Given);
        };
        Trap(run, [&](const RuntimeError& raised) { error = raised.Line(); });
        return error;
    }

    const std::shared_ptr<Link> m_Link;
    std::int32_t m_Timeout = DefaultTimeout;
    Text m_Key;
    std::uint64_t m_ReplyLimit = DataReplyLimit;
};

SenderLibrary::SenderLibrary(Parts parts) : m_Link(std::make_shared<Link>(std::move(parts))) {}

std::unique_ptr<Sender> SenderLibrary::MakeSender() const { return std::make_unique<FacedSender>(m_Link); }

}  // namespace tb
