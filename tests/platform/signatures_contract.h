// What every implementation of Signatures keeps to. The signature is OpenSSL's, of the text "abc".
#pragma once

#include <gtest/gtest.h>

#include "platform/Signatures.h"
#include "refdata/manifest/SignedManifest.h"

namespace tb {

inline void CheckSignatures(Signatures& signatures) {
    const Text key =
        ReadP256Text("KyQb/4Vr1DtwdQyZ98muZhf6ISEli0Dg7sp9CL98PtSyILgC2Ve9M/XF8zqxHJlncPgncLWQ+q/8kyGMeMv0+A==");
    const Text signature =
        ReadP256Text(" W9GoIi/51RNi8JEX6/MsbHna9Fpf5fkFfm+9t6cnvfxJKHWcZ82JR5LcDiXFQS3bnCk0i9GXMkzuhYtNeX7Pzw==\r\n");
    const auto hash = signatures.MakeSha256();
    hash->Append("a");
    hash->Append("");
    hash->Append("bc");
    const Text abc = hash->Finish();
    EXPECT_EQ(FileHash(abc), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    EXPECT_TRUE(signatures.VerifyP256(key, abc, signature));
    const auto changed = [](Text bytes, size_t place) {
        bytes[place] = static_cast<char>(bytes[place] ^ 1);
        return bytes;
    };
    for (const size_t place : {0U, 31U, 32U, 63U}) {
        // A changed key is no point of the curve.
        EXPECT_FALSE(signatures.VerifyP256(changed(key, place), abc, signature));
        EXPECT_FALSE(signatures.VerifyP256(key, changed(abc, place % 32), signature));
        EXPECT_FALSE(signatures.VerifyP256(key, abc, changed(signature, place)));
    }
    EXPECT_FALSE(signatures.VerifyP256(key, abc, Text(64, '\0')));
    // The base point of the curve: a key, and another one.
    const Text other =
        ReadP256Text("axfR8uEsQkf4vOblY6RA8ncDfYEt6zOg9KE5RdiYwpZP40Li/hp/m47n60p8D54WK84zV2sxXs7LtkBoN79R9Q==");
    EXPECT_FALSE(signatures.VerifyP256(other, abc, signature));
    for (const Text& odd : {Text(), Text(63, 'x'), Text(65, 'x')}) {
        EXPECT_FALSE(signatures.VerifyP256(odd, abc, signature));
        EXPECT_FALSE(signatures.VerifyP256(key, odd, signature));
        EXPECT_FALSE(signatures.VerifyP256(key, abc, odd));
    }
}

}  // namespace tb
