// Hashes and signatures by the system's cryptography (CNG).
#pragma once

#include "platform/Signatures.h"

namespace tb {

class Win32Signatures : public Signatures {
public:
    std::unique_ptr<Sha256> MakeSha256() override;
    bool VerifyP256(TextView publicKey, TextView hash, TextView signature) override;
};

}  // namespace tb
