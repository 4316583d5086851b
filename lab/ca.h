// The lab's certificate authority and the server contexts with certificates good and bad.
#pragma once

#include <openssl/types.h>

#include <array>
#include <filesystem>
#include <memory>

namespace lab {

enum class Certificate { good, expired, unknown_ca, wrong_name };

class CertificateAuthority {
  public:
    // Made at the first start in `folder`, loaded from there ever after. Its certificate alone
    // stands in the trust folder, under the name by which a TLS library looks it up.
    explicit CertificateAuthority(const std::filesystem::path& folder);

    std::filesystem::path trust_folder() const { return folder_ / "trust"; }

    // A server context that shows the given certificate. Lives as long as the authority.
    SSL_CTX* context(Certificate which) const {
        return contexts_[static_cast<std::size_t>(which)].get();
    }

  private:
    std::filesystem::path folder_;
    std::array<std::shared_ptr<SSL_CTX>, 4> contexts_;
};

} // namespace lab
