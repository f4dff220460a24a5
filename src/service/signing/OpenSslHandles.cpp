#include "service/signing/OpenSslHandles.h"

#include <openssl/ecdsa.h>

#include "platform/Signatures.h"

namespace tb {

namespace {

using OwnedNumber = std::unique_ptr<BIGNUM, OpenSslFree<BN_free>>;
using OwnedPair = std::unique_ptr<ECDSA_SIG, OpenSslFree<ECDSA_SIG_free>>;

constexpr int NumberSize = Signatures::P256Size / 2;

}  // namespace

Text DerOfSignature(TextView signature) {
    const OwnedPair pair(ECDSA_SIG_new());
    OwnedNumber r(BN_bin2bn(BytesOf(signature), NumberSize, nullptr));
    OwnedNumber s(BN_bin2bn(BytesOf(signature) + NumberSize, NumberSize, nullptr));
    if (!pair || !r || !s || ECDSA_SIG_set0(pair.get(), r.get(), s.get()) != 1) return {};
    // They belong to the pair now.
    static_cast<void>(r.release());
    static_cast<void>(s.release());
    unsigned char* made = nullptr;
    const int size = i2d_ECDSA_SIG(pair.get(), &made);
    if (size <= 0) return {};
    Text der(reinterpret_cast<const char*>(made), static_cast<size_t>(size));
    OPENSSL_free(made);
    return der;
}

Text SignatureOfDer(TextView der) {
    const unsigned char* bytes = BytesOf(der);
    const OwnedPair pair(d2i_ECDSA_SIG(nullptr, &bytes, static_cast<long>(der.size())));
    Text signature(Signatures::P256Size, '\0');
    unsigned char* const place = BytesOf(signature);
    const bool fits = pair && BN_bn2binpad(ECDSA_SIG_get0_r(pair.get()), place, NumberSize) == NumberSize &&
                      BN_bn2binpad(ECDSA_SIG_get0_s(pair.get()), place + NumberSize, NumberSize) == NumberSize;
    return fits ? signature : Text();
}

}  // namespace tb
