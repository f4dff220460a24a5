// Owners of the cryptographic library's objects, and its two forms of a signature.
#pragma once

#include <openssl/evp.h>

#include <memory>

#include "base/text.h"

namespace tb {

template <auto Free>
struct OpenSslFree {
    template <typename Object>
    void operator()(Object* object) const {
        Free(object);
    }
};
using OwnedKey = std::unique_ptr<EVP_PKEY, OpenSslFree<EVP_PKEY_free>>;
using OwnedKeyContext = std::unique_ptr<EVP_PKEY_CTX, OpenSslFree<EVP_PKEY_CTX_free>>;
using OwnedHash = std::unique_ptr<EVP_MD_CTX, OpenSslFree<EVP_MD_CTX_free>>;

// The name under which the library knows the curve P-256.
inline constexpr const char* P256Group = "prime256v1";

// The library reads bytes as unsigned ones.
inline const unsigned char* BytesOf(TextView bytes) { return reinterpret_cast<const unsigned char*>(bytes.data()); }
inline unsigned char* BytesOf(Text& bytes) { return reinterpret_cast<unsigned char*>(bytes.data()); }

// Between r and s, 32 bytes each, and the DER that the library signs and verifies with. Empty when the library cannot.
Text DerOfSignature(TextView signature);
Text SignatureOfDer(TextView der);

}  // namespace tb
