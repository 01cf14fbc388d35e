#pragma once

#include <memory>
#include <string>
#include <utility>

#include "backend/Painter.h"

namespace host {

class Package;

/// A picture, or the name of one of the package's that is decoded when it is first asked for: most controls are made
/// long before they are seen. UI thread only.
class PictureSource {
public:
    /// None.
    PictureSource() = default;
    PictureSource(std::shared_ptr<const Picture> picture) : picture_(std::move(picture)) {}
    /// The package must outlive the source.
    PictureSource(const Package& package, std::string fileName) : package_(&package), fileName_(std::move(fileName)) {}

    /// Null when there is none, or it does not decode.
    [[nodiscard]] const std::shared_ptr<const Picture>& Get();

private:
    std::shared_ptr<const Picture> picture_;
    const Package* package_ = nullptr;  ///< null once the picture was asked for
    std::string fileName_;
};

}  // namespace host
