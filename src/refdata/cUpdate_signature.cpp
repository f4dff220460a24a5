#include "base/errors.h"
#include "refdata/cUpdate.h"
#include "refdata/manifest/SignedManifest.h"

namespace tb {

bool cUpdate::IsSigned(Sender& sender, const Element& manifest) {
    const Text text = TrapOr(
        Text(), [&] { return SignedText(manifest); },
        [](const RuntimeError&) { /* the rest of it is sound, so a hash is missing */ });
    if (text.empty()) {
        LogRefusal("it is not signed (a file has no SHA256)");
        return false;
    }
    const ElementPtr servers = m_Access.Settings()->TryGlobalsElement("SERVERS", "NAME", "UpdatesSVR");
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

bool cUpdate::HasSignedHash(const UpdateFile& file, const std::filesystem::path& path) const {
    return m_Access.Signatures != nullptr &&
           HashOfFile(Program().System.Files, *m_Access.Signatures, path) == file.SHA256;
}

}  // namespace tb
