#pragma once

#include <memory>
#include <string>

#include "backend/Backend.h"

namespace host {

/// A back end for a page in a browser. WebBackend.cpp lists what it has. One at a time.
[[nodiscard]] std::unique_ptr<Backend> CreateWebBackend(const BackendOptions& options);
/// The virtual clock of the headless back end with the page's painter and files: for a performance that is rendered
/// faster than it sounds, in a page or without one.
[[nodiscard]] std::unique_ptr<Backend> CreateRenderingBackend(const BackendOptions& options);

/// Whether the page has handed over what the back end needs. It does not start the program otherwise.
[[nodiscard]] bool IsWebAvailable();

[[nodiscard]] std::string WebLibraries();

/// The best liked of `known` by the browser's own settings, which blanks part; empty for none.
[[nodiscard]] std::string BrowserLanguage(const std::string& known);
/// The canvas that the page has made, in device pixels.
[[nodiscard]] PixelSize CanvasSize();
/// Tells the page that the program has ended, or that it was not started.
void TellPageOfEnd(int status);
void TellPageOfRefusal(const std::string& reason);

}  // namespace host
