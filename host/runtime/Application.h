#pragma once

namespace host {

/// The application as its phone sees it; the framework's UiApp stands behind it. UI thread only.
class Application {
public:
    /// After OnEnd, or without it when the phone goes first.
    virtual ~Application() = default;

    virtual void OnForeground() = 0;
    virtual void OnBackground() = 0;
    virtual void OnScreenOn() = 0;
    virtual void OnScreenOff() = 0;
    /// Its last callbacks, then its frame and forms go. Nothing is delivered to it afterwards.
    virtual void OnEnd() = 0;
};

}  // namespace host
