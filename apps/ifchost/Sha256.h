// SPDX-License-Identifier: Apache-2.0
// SHA-256 over bytes that come in pieces.
#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace ifchost {

/// Incremental SHA-256. Throws std::runtime_error when the crypto library refuses to work, which
/// is a broken installation rather than bad input.
class Sha256 {
  public:
    using Digest = std::array<unsigned char, 32>;

    Sha256();
    ~Sha256();
    Sha256(const Sha256&) = delete;
    Sha256& operator=(const Sha256&) = delete;

    void Update(const void* data, std::size_t size);
    void Update(std::string_view text) { Update(text.data(), text.size()); }
    /// The digest of all updates. The object takes no more updates after it.
    Digest Finish();

    /// Lower-case hexadecimal form, 64 characters.
    static std::string Hex(const Digest& digest);

  private:
    struct Context;
    std::unique_ptr<Context> context_;
};

}  // namespace ifchost
