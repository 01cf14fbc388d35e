#pragma once

#include "runtime/sound/PhoneFormat.h"

namespace host {

/// Takes what a source hears. UI thread.
class BlockSink {
public:
    virtual void OnBlock(const Block& block) = 0;
    /// Nothing can be heard from now on.
    virtual void OnSourceLost() = 0;
    virtual void OnSourceRestored() = 0;
    /// What was heard lately was exactly nothing, which no working microphone delivers for so long.
    virtual void OnSourceSilent() = 0;

protected:
    ~BlockSink() = default;
};

/// Where the phone's blocks come from. UI thread.
class BlockSource {
public:
    virtual ~BlockSource() = default;

    /// The sink is told at once when nothing can be heard now.
    virtual void Start(BlockSink& sink) = 0;
    /// No sink is called any more when this returns. Stopping a stopped source does nothing.
    virtual void Stop() noexcept = 0;
};

}  // namespace host
