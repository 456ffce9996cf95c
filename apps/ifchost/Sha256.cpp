// SPDX-License-Identifier: Apache-2.0
#include "Sha256.h"

#include <stdexcept>

#include <openssl/evp.h>

namespace ifchost {

struct Sha256::Context {
    EVP_MD_CTX* handle = EVP_MD_CTX_new();
    ~Context() { EVP_MD_CTX_free(handle); }
};

namespace {

void Require(bool worked) {
    if (!worked) throw std::runtime_error("SHA-256 is not available");
}

}  // namespace

Sha256::Sha256() : context_(std::make_unique<Context>()) {
    Require(context_->handle != nullptr);
    Require(EVP_DigestInit_ex(context_->handle, EVP_sha256(), nullptr) == 1);
}

Sha256::~Sha256() = default;

void Sha256::Update(const void* data, std::size_t size) {
    Require(EVP_DigestUpdate(context_->handle, data, size) == 1);
}

Sha256::Digest Sha256::Finish() {
    Digest digest{};
    Require(EVP_DigestFinal_ex(context_->handle, digest.data(), nullptr) == 1);
    return digest;
}

std::string Sha256::Hex(const Digest& digest) {
    constexpr char kDigits[] = "0123456789abcdef";
    std::string text;
    for (const unsigned char byte : digest) {
        text += kDigits[byte >> 4];
        text += kDigits[byte & 15];
    }
    return text;
}

}  // namespace ifchost
