#pragma once

#include "backend/Accessible.h"

namespace host {

/// Tells the page what its canvas shows, so that it mirrors that in real elements. UI thread only.
class WebAccessibility {
public:
    /// Null for none. It must outlive this, or be taken back.
    void SetSource(Accessible* source) { source_ = source; }
    /// Asks the source, and tells the page if anything is another than before. To be called when a frame was shown.
    void Update();

    // From the page; passed over without a source.
    void Activate(std::uint64_t id);
    void SetValue(std::uint64_t id, int value);

private:
    Accessible* source_ = nullptr;
    AccessibleScreen told_;
};

}  // namespace host
