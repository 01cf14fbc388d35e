#pragma once

namespace Tizen {
namespace App {

/// The place where an application could keep its state between two lives. The ocarina keeps nothing there, so it holds
/// nothing; it is only handed to the lifecycle callbacks.
class AppRegistry {
public:
    AppRegistry() = default;
    AppRegistry(const AppRegistry&) = delete;
    AppRegistry& operator=(const AppRegistry&) = delete;
};

}  // namespace App
}  // namespace Tizen
