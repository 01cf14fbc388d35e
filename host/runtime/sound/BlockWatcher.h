#pragma once

#include "runtime/sound/PhoneFormat.h"

namespace host {

/// Hears what the microphone hears. UI thread.
class BlockWatcher {
public:
    /// A block is delivered, without the breath of the keys.
    virtual void OnBlockHeard(const Block& block) = 0;

protected:
    ~BlockWatcher() = default;
};

}  // namespace host
