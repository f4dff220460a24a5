// A publisher's private key, P-256.
#pragma once

#include <filesystem>
#include <memory>

#include "base/text.h"

namespace tb {

// Each operation raises an InputError for a key that cannot be made, read or written, or a signature that cannot be
// made.
class SigningKey {
public:
    static SigningKey Generate();
    // A PEM file; the library asks on the terminal for the pass phrase of an encrypted one.
    static SigningKey Read(const std::filesystem::path& path);
    SigningKey(SigningKey&& other) noexcept;
    ~SigningKey();

    // As a new PEM file, not encrypted, that only its owner may read. One that is there already is never replaced.
    void Write(const std::filesystem::path& path) const;

    // X and Y, see Signatures::P256Size.
    Text PublicKey() const;
    // r and s, of the SHA-256 of `message`.
    Text Sign(TextView message) const;

private:
    struct Inside;
    explicit SigningKey(std::unique_ptr<Inside> inside);

    std::unique_ptr<Inside> m_Inside;
};

}  // namespace tb
