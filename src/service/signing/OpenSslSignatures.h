// Hashes and signatures by OpenSSL's library: what publishers check with.
#pragma once

#include "platform/Signatures.h"

namespace tb {

class OpenSslSignatures : public Signatures {
public:
    std::unique_ptr<Sha256> MakeSha256() override;
    bool VerifyP256(TextView publicKey, TextView hash, TextView signature) override;
};

// SHA-256 of bytes that are there as a whole.
Text Sha256Of(TextView bytes);

}  // namespace tb
