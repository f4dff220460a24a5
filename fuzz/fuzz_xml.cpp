// XML from files and web services: whatever parses is written as a text that parses to the same tree.
#include <cstdlib>

#include "base/errors.h"
#include "components/tbXML/XmlParser.h"

namespace {

bool Same(const tb::Element& one, const tb::Element& other) {
    if (one.Name() != other.Name() || one.Body() != other.Body() || one.Count() != other.Count()) return false;
    if (one.AttributeCount() != other.AttributeCount()) return false;
    for (std::int32_t index = 1; index <= one.AttributeCount(); ++index) {
        const tb::Attribute& attribute = one.Attribute(index);
        if (attribute.Name() != other.Attribute(index).Name()) return false;
        if (attribute.Value() != other.Attribute(index).Value()) return false;
    }
    auto child = other.begin();
    for (const tb::ElementPtr& own : one) {
        if (!Same(*own, **child++)) return false;
    }
    return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    tb::ElementPtr root;
    tb::Trap([&] { root = tb::ParseXml(tb::TextView(reinterpret_cast<const char*>(data), size)); },
             [](const tb::RuntimeError& error) {
                 if (error.Number != tb::XmlErrorNumber) std::abort();
             });
    if (root == nullptr) return 0;
    const tb::Text written = root->XML();
    const tb::ElementPtr again = tb::ParseXml(written);
    if (!Same(*root, *again) || again->XML() != written) std::abort();
    return 0;
}
