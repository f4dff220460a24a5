#include "base/errors.h"
#include "base/numbers.h"
#include "refdata/cUpdate.h"
#include "refdata/manifest/SignedManifest.h"

namespace tb {

// A signature never ages, so an old update with its holes could be offered as long as there are copies of it.
bool cUpdate::IsOlder(std::int32_t number) {
    const Text last = m_Access.Settings().GetXMLString("MAIN", "LastUpdateVersion", "0");
    bool isOlder = false;
    Trap([&] { isOlder = number < ToInt32(last); }, [](const RuntimeError&) { /* nothing is below no number */ });
    if (isOlder) LogRefusal("number " + std::to_string(number) + " is older than " + last);
    return isOlder;
}

bool cUpdate::IsSigned(Sender& sender, const Element& manifest) {
    Text text;
    Trap([&] { text = SignedText(manifest); },
         [](const RuntimeError&) { /* the rest of it is sound, so a hash is missing */ });
    if (text.empty()) {
        LogRefusal("it is not signed (a file has no SHA256)");
        return false;
    }
    const ElementPtr servers = m_Access.Settings().TryGlobalsElement("SERVERS", "NAME", "UpdatesSVR");
    Text reply;
    sender.ReplyLimit(Sender::SmallReplyLimit);
    const Text error = sender.PostRequest(servers, ManifestPage(Text(ManifestName) + SignatureSuffix), {}, reply, {});
    sender.ReplyLimit(Sender::DataReplyLimit);
    if (!error.empty() || Trim(reply).empty()) {
        LogRefusal("it is not signed (" + (error.empty() ? Text("an empty answer") : error) + ")");
        return false;
    }
    bool isSigned = false;
    if (m_Access.Signatures != nullptr) {
        const std::unique_ptr<Sha256> hash = m_Access.Signatures->MakeSha256();
        hash->Append(text);
        isSigned = m_Access.Signatures->VerifyP256(ReadP256Text(Program().Product.UpdateKey), hash->Finish(),
                                                   ReadP256Text(reply));
    }
    if (!isSigned) LogRefusal("its signature is not by the key of this program");
    return isSigned;
}

bool cUpdate::IsSignedFile(const UpdateFile& file, const std::filesystem::path& local) {
    const bool isSigned = m_Access.Signatures != nullptr &&
                          HashOfFile(Program().System.Files, *m_Access.Signatures, local) == file.SHA256;
    if (!isSigned) LogRefusal(file.FILE + " is not the file that was signed");
    return isSigned;
}

}  // namespace tb
