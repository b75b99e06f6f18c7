#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <openssl/x509.h>

namespace korvane::testing {

/// A certificate with its key.
struct Credential {
    std::shared_ptr<EVP_PKEY> key;
    std::shared_ptr<X509> certificate;

    [[nodiscard]] std::string certificatePEM() const;
};

/// Makes certificates that lead to a root of its own.
class TestAuthority {
  public:
    TestAuthority();

    /// What the certificate is to say of its holder.
    struct Wish {
        std::vector<std::string> units; ///< organisational units of the subject
        std::string usage;              ///< the extended key usage: "codeSigning"
        std::string names{};            ///< "DNS:localhost"
        long validForDays = 1;          ///< negative: expired
    };
    [[nodiscard]] Credential issue(const Wish& wish) const;
    [[nodiscard]] std::string rootPEM() const { return root_.certificatePEM(); }

  private:
    Credential root_;
};

/// A detached CMS signature of the text, DER; `attached`: with the text in it.
[[nodiscard]] std::string signedMessage(const std::string& text, const Credential& signer,
                                        bool attached = false);

} // namespace korvane::testing
