// A mail as somebody has submitted it: whatever it holds, it is read to its end, and what is published of it are URLs
// that the list takes or refuses.
#include <cstdlib>

#include "service/mail/MailTexts.h"
#include "service/mail/UrlScan.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const tb::TextView mail(reinterpret_cast<const char*>(data), size);
    const std::size_t end = mail.find("\n\n");
    const tb::TextView body = end == tb::TextView::npos ? mail : mail.substr(end + 2);
    std::size_t read = 0;
    for (const tb::Text& text : tb::MailTexts(mail.substr(0, end), body)) {
        read += text.size();
        for (const tb::Text& url : tb::UrlsIn(text)) {
            if (!tb::LowerCase(url).starts_with("http") || url.find_first_of(" \r\n\t\"<>#") != tb::Text::npos) abort();
        }
    }
    // Decoding only shortens, and nothing is read twice.
    if (read > body.size()) abort();
    return 0;
}
