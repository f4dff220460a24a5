#include "service/signing/SigningKey.h"

#include <fcntl.h>
#include <openssl/core_names.h>
#include <openssl/err.h>
#include <openssl/pem.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "base/errors.h"
#include "platform/Signatures.h"
#include "service/signing/OpenSslHandles.h"
#include "service/signing/OpenSslSignatures.h"

namespace tb {

namespace {

using OwnedBio = std::unique_ptr<BIO, OpenSslFree<BIO_free_all>>;

[[noreturn]] void Fail(const Text& what) {
    char reason[256] = "";
    if (const unsigned long code = ERR_get_error()) ERR_error_string_n(code, reason, sizeof reason);
    throw InputError(reason[0] == '\0' ? what : what + " (" + reason + ")");
}

[[noreturn]] void FailFile(const std::filesystem::path& path) {
    throw InputError(path.string() + ": " + std::strerror(errno));
}

// All of it, to the disk.
void WriteOut(int file, TextView bytes, const std::filesystem::path& path) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(file, bytes.data(), bytes.size());
        if (written < 0 && errno != EINTR) FailFile(path);
        if (written > 0) bytes.remove_prefix(static_cast<size_t>(written));
    }
    if (::fsync(file) != 0) FailFile(path);
}

bool IsP256(const EVP_PKEY* key) {
    char group[64] = "";
    return EVP_PKEY_is_a(key, "EC") == 1 && EVP_PKEY_get_group_name(key, group, sizeof group, nullptr) == 1 &&
           std::strcmp(group, P256Group) == 0;
}

}  // namespace

struct SigningKey::Inside {
    OwnedKey Key;
};

SigningKey::SigningKey(std::unique_ptr<Inside> inside) : m_Inside(std::move(inside)) {}
SigningKey::SigningKey(SigningKey&& other) noexcept = default;
SigningKey::~SigningKey() = default;

SigningKey SigningKey::Generate() {
    OwnedKey key(EVP_EC_gen(P256Group));
    if (!key) Fail("no key can be made");
    return SigningKey(std::make_unique<Inside>(Inside{std::move(key)}));
}

SigningKey SigningKey::Read(const std::filesystem::path& path) {
    errno = 0;
    const OwnedBio file(BIO_new_file(path.c_str(), "r"));
    if (!file) FailFile(path);
    OwnedKey key(PEM_read_bio_PrivateKey(file.get(), nullptr, nullptr, nullptr));
    if (!key) Fail(path.string() + ": no private key that can be read");
    if (!IsP256(key.get())) throw InputError(path.string() + ": not a key of the curve P-256");
    return SigningKey(std::make_unique<Inside>(Inside{std::move(key)}));
}

void SigningKey::Write(const std::filesystem::path& path) const {
    const OwnedBio memory(BIO_new(BIO_s_secmem()));
    char* pem = nullptr;
    if (!memory ||
        PEM_write_bio_PrivateKey(memory.get(), m_Inside->Key.get(), nullptr, nullptr, 0, nullptr, nullptr) != 1) {
        Fail("the key cannot be written");
    }
    const long size = BIO_get_mem_data(memory.get(), &pem);
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (file < 0) FailFile(path);
    try {
        WriteOut(file, {pem, static_cast<size_t>(size)}, path);
    } catch (const RuntimeError&) {
        ::close(file);
        ::unlink(path.c_str());
        throw;
    }
    if (::close(file) != 0) FailFile(path);
}

Text SigningKey::PublicKey() const {
    Text point(1 + Signatures::P256Size, '\0');
    size_t size = 0;
    if (EVP_PKEY_get_octet_string_param(m_Inside->Key.get(), OSSL_PKEY_PARAM_ENCODED_PUBLIC_KEY, BytesOf(point),
                                        point.size(), &size) != 1 ||
        size != point.size() || point[0] != '\x04') {
        Fail("the public key cannot be told");
    }
    return point.substr(1);
}

Text SigningKey::Sign(TextView message) const {
    const Text hash = Sha256Of(message);
    const OwnedKeyContext context(EVP_PKEY_CTX_new(m_Inside->Key.get(), nullptr));
    Text der(static_cast<size_t>(EVP_PKEY_get_size(m_Inside->Key.get())), '\0');
    size_t size = der.size();
    if (!context || EVP_PKEY_sign_init(context.get()) != 1 ||
        EVP_PKEY_sign(context.get(), BytesOf(der), &size, BytesOf(hash), hash.size()) != 1) {
        Fail("the signature cannot be made");
    }
    Text signature = SignatureOfDer(TextView(der).substr(0, size));
    if (signature.empty()) Fail("the signature cannot be made");
    return signature;
}

}  // namespace tb
