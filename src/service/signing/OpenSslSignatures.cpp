#include "service/signing/OpenSslSignatures.h"

#include <openssl/core_names.h>

#include "base/errors.h"
#include "service/signing/OpenSslHandles.h"

namespace tb {

namespace {

void Require(bool done) {
    if (!done) throw Error(ErrorNumber::Internal);
}

class OpenSslSha256 : public Sha256 {
public:
    OpenSslSha256() : m_Hash(EVP_MD_CTX_new()) {
        Require(m_Hash && EVP_DigestInit_ex(m_Hash.get(), EVP_sha256(), nullptr) == 1);
    }
    void Append(TextView bytes) override { Require(EVP_DigestUpdate(m_Hash.get(), bytes.data(), bytes.size()) == 1); }
    Text Finish() override {
        Text hash(Size, '\0');
        Require(EVP_DigestFinal_ex(m_Hash.get(), BytesOf(hash), nullptr) == 1);
        return hash;
    }

private:
    OwnedHash m_Hash;
};

// Null for bytes that are no point of the curve.
OwnedKey PublicKeyOf(TextView publicKey) {
    // The sign of a point that is told by both its numbers.
    Text point = '\x04' + Text(publicKey);
    Text group = P256Group;
    const OSSL_PARAM parts[] = {OSSL_PARAM_construct_utf8_string(OSSL_PKEY_PARAM_GROUP_NAME, group.data(), 0),
                                OSSL_PARAM_construct_octet_string(OSSL_PKEY_PARAM_PUB_KEY, point.data(), point.size()),
                                OSSL_PARAM_construct_end()};
    const OwnedKeyContext context(EVP_PKEY_CTX_new_from_name(nullptr, "EC", nullptr));
    EVP_PKEY* key = nullptr;
    if (!context || EVP_PKEY_fromdata_init(context.get()) != 1 ||
        EVP_PKEY_fromdata(context.get(), &key, EVP_PKEY_PUBLIC_KEY, const_cast<OSSL_PARAM*>(parts)) != 1) {
        return nullptr;
    }
    return OwnedKey(key);
}

}  // namespace

std::unique_ptr<Sha256> OpenSslSignatures::MakeSha256() { return std::make_unique<OpenSslSha256>(); }

bool OpenSslSignatures::VerifyP256(TextView publicKey, TextView hash, TextView signature) {
    if (publicKey.size() != P256Size || hash.size() != Sha256::Size || signature.size() != P256Size) return false;
    const OwnedKey key = PublicKeyOf(publicKey);
    const Text der = DerOfSignature(signature);
    if (!key || der.empty()) return false;
    const OwnedKeyContext context(EVP_PKEY_CTX_new(key.get(), nullptr));
    return context && EVP_PKEY_verify_init(context.get()) == 1 &&
           EVP_PKEY_verify(context.get(), BytesOf(der), der.size(), BytesOf(hash), hash.size()) == 1;
}

Text Sha256Of(TextView bytes) {
    OpenSslSha256 hash;
    hash.Append(bytes);
    return hash.Finish();
}

}  // namespace tb
