#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "backend/Storage.h"

namespace host {

/// What the package's recordings are in MIDI: tones.xml of the package. UI thread only.
class ToneTable {
public:
    /// Rows that are wrong are left out; what is wrong goes to `problems`, each as "FILE:LINE: reason".
    void Load(const Storage& storage, std::vector<std::string>& problems);

    /// 0..127; negative for a recording that is not in the table. `file` is its name without a folder.
    [[nodiscard]] int NoteOf(std::string_view file) const;
    /// The instrument's number as messages have it, 0..127; negative where the package names none.
    [[nodiscard]] int Program() const noexcept { return program_; }

private:
    std::map<std::string, int, std::less<>> notes_;
    int program_ = -1;
};

}  // namespace host
