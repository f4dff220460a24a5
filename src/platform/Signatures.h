// Hashes and signatures, as the system computes them.
#pragma once

#include <memory>

#include "base/text.h"

namespace tb {

// SHA-256 of bytes that come piece by piece. Every operation raises error 51 when the system fails.
class Sha256 {
public:
    static constexpr size_t Size = 32;

    virtual ~Sha256() = default;
    virtual void Append(TextView bytes) = 0;
    // The 32 bytes of the hash. Nothing may follow.
    virtual Text Finish() = 0;
};

class Signatures {
public:
    // Bytes of a public key, X and Y, and of a signature, r and s: two numbers of 32 bytes each, high byte first.
    static constexpr size_t P256Size = 64;

    virtual ~Signatures() = default;
    // Error 51 when the system has none.
    virtual std::unique_ptr<Sha256> MakeSha256() = 0;
    // True when the key has made the signature (ECDSA over the curve P-256) of what has this SHA-256. False for any
    // other, for bytes that are no key, hash or signature, and when the system cannot tell.
    virtual bool VerifyP256(TextView publicKey, TextView hash, TextView signature) = 0;
};

}  // namespace tb
