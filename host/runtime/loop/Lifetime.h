#pragma once

#include <memory>

namespace host {

/// A member by which what comes late (a posted event, the return from a listener) finds out whether its object is still
/// there. UI thread only.
class Lifetime {
public:
    Lifetime() = default;
    Lifetime(const Lifetime&) = delete;
    Lifetime& operator=(const Lifetime&) = delete;

    /// Expires with the object, or when End is called.
    [[nodiscard]] std::weak_ptr<const void> Watch() const { return token_; }
    void End() noexcept { token_.reset(); }

private:
    struct Token {};
    std::shared_ptr<const Token> token_ = std::make_shared<const Token>();
};

}  // namespace host
