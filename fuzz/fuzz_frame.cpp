// Frames from files and web services: whatever comes, a frame opens only if framing its text gives it back.
#include <cstdlib>

#include "sitedb/codec/Encryption.h"

namespace {

class NoLog : public tb::LogSink {
public:
    void WriteLog(const tb::Text& /*message*/, tb::LogLevel /*level*/) noexcept override {}
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const tb::TextView frame(reinterpret_cast<const char*>(data), size);
    NoLog log;
    tb::Text plain = "before";
    const bool opened = tb::ChkEncryptString(frame, plain, log);
    if (opened ? tb::EncryptStringChk(plain) != frame : plain != "before") std::abort();
    return 0;
}
