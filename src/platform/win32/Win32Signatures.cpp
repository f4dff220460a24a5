#include "platform/win32/Win32Signatures.h"

#include <windows.h>

#include <bcrypt.h>

#include "base/errors.h"
#include "platform/win32/Handle.h"

namespace tb {

namespace {

struct AlgorithmTrait {
    using Value = BCRYPT_ALG_HANDLE;
    static Value None() { return nullptr; }
    static bool Close(Value value) { return BCRYPT_SUCCESS(BCryptCloseAlgorithmProvider(value, 0)); }
};
struct HashTrait {
    using Value = BCRYPT_HASH_HANDLE;
    static Value None() { return nullptr; }
    static bool Close(Value value) { return BCRYPT_SUCCESS(BCryptDestroyHash(value)); }
};
struct KeyTrait {
    using Value = BCRYPT_KEY_HANDLE;
    static Value None() { return nullptr; }
    static bool Close(Value value) { return BCRYPT_SUCCESS(BCryptDestroyKey(value)); }
};
using Algorithm = Handle<AlgorithmTrait>;

// One call takes at most this much.
constexpr size_t LargestPiece = size_t{1} << 30;

void Require(NTSTATUS status) {
    if (!BCRYPT_SUCCESS(status)) throw Error(ErrorNumber::Internal);
}

Algorithm OpenAlgorithm(LPCWSTR name) {
    BCRYPT_ALG_HANDLE opened = nullptr;
    Require(BCryptOpenAlgorithmProvider(&opened, name, nullptr, 0));
    return Algorithm(opened);
}

// The system only reads what it takes as writable.
PUCHAR BytesOf(TextView bytes) { return const_cast<PUCHAR>(reinterpret_cast<const UCHAR*>(bytes.data())); }

class Win32Sha256 : public Sha256 {
public:
    Win32Sha256() : m_Algorithm(OpenAlgorithm(BCRYPT_SHA256_ALGORITHM)) {
        BCRYPT_HASH_HANDLE made = nullptr;
        Require(BCryptCreateHash(m_Algorithm.Get(), &made, nullptr, 0, nullptr, 0, 0));
        m_Hash = Handle<HashTrait>(made);
    }
    void Append(TextView bytes) override {
        while (!bytes.empty()) {
            const TextView piece = bytes.substr(0, LargestPiece);
            Require(BCryptHashData(m_Hash.Get(), BytesOf(piece), static_cast<ULONG>(piece.size()), 0));
            bytes.remove_prefix(piece.size());
        }
    }
    Text Finish() override {
        Text hash(Size, '\0');
        Require(BCryptFinishHash(m_Hash.Get(), BytesOf(hash), static_cast<ULONG>(hash.size()), 0));
        return hash;
    }

private:
    Algorithm m_Algorithm;
    Handle<HashTrait> m_Hash;
};

}  // namespace

std::unique_ptr<Sha256> Win32Signatures::MakeSha256() { return std::make_unique<Win32Sha256>(); }

bool Win32Signatures::VerifyP256(TextView publicKey, TextView hash, TextView signature) {
    if (publicKey.size() != P256Size || hash.size() != Sha256::Size || signature.size() != P256Size) return false;
    return TrapOr(
        false,
        [&] {
            const Algorithm algorithm = OpenAlgorithm(BCRYPT_ECDSA_P256_ALGORITHM);
            const BCRYPT_ECCKEY_BLOB head{BCRYPT_ECDSA_PUBLIC_P256_MAGIC, P256Size / 2};
            const TextView headBytes(reinterpret_cast<const char*>(&head), sizeof head);
            const Text blob = Text(headBytes).append(publicKey);
            BCRYPT_KEY_HANDLE imported = nullptr;
            Require(BCryptImportKeyPair(algorithm.Get(), nullptr, BCRYPT_ECCPUBLIC_BLOB, &imported, BytesOf(blob),
                                        static_cast<ULONG>(blob.size()), 0));
            const Handle<KeyTrait> key(imported);
            return BCRYPT_SUCCESS(BCryptVerifySignature(key.Get(), nullptr, BytesOf(hash),
                                                        static_cast<ULONG>(hash.size()), BytesOf(signature),
                                                        static_cast<ULONG>(signature.size()), 0));
        },
        [](const RuntimeError&) { /* nothing speaks for the signature */ });
}

}  // namespace tb
