#pragma once

#include <optional>
#include <string>

#include "backend/Storage.h"
#include "backend/Window.h"

namespace host {

/// Remembers from one run to the next where the window was and how large, in the file "window" of the data folder,
/// beside the application's settings. A file that cannot be read or does not make sense counts for nothing. UI thread
/// only.
class PlaceKeeper {
public:
    /// A place is remembered for a phone screen of that size alone. Everything must outlive it.
    PlaceKeeper(Storage& storage, Window& window, PixelSize phoneScreen);
    PlaceKeeper(const PlaceKeeper&) = delete;
    PlaceKeeper& operator=(const PlaceKeeper&) = delete;

    /// Before the window is opened.
    void Restore();
    /// While it is open. A place that cannot be written is another one's next time.
    void Save();

private:
    [[nodiscard]] std::string Path() const;

    Storage& storage_;
    Window& window_;
    PixelSize phoneScreen_;
    std::optional<WindowPlace> remembered_;
};

}  // namespace host
