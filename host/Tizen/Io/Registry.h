#pragma once

#include <memory>

#include "Tizen/Base/Collection/IList.h"
#include "Tizen/Base/String.h"

namespace Tizen {
namespace Io {

/// A file of named sections that hold named texts. Made anew for every access: it reads the file when it is constructed
/// and writes it at Flush, nothing else. UI thread only.
class Registry {
public:
    Registry();
    ~Registry();
    Registry(const Registry&) = delete;
    Registry& operator=(const Registry&) = delete;

    /// E_FILE_NOT_FOUND when the file is missing and not to be made; E_IO when it cannot be made or read, or is too
    /// large for a settings file. The file on disk is as it was then.
    result Construct(const Tizen::Base::String& path, bool createIfMissing);

    /// The names as Strings, in the file's order. The caller owns the list, the list its elements.
    Tizen::Base::Collection::IList* GetAllSectionNamesN() const;

    /// E_OBJ_ALREADY_EXIST for a section that is there; E_INVALID_ARG for a name that could not be read back.
    result AddSection(const Tizen::Base::String& section);
    /// E_SECTION_NOT_FOUND or E_KEY_NOT_FOUND leave `value` as it is.
    result GetValue(const Tizen::Base::String& section, const Tizen::Base::String& key,
                    Tizen::Base::String& value) const;
    /// Changes an entry that is there. A value of several lines is E_INVALID_ARG.
    result SetValue(const Tizen::Base::String& section, const Tizen::Base::String& key,
                    const Tizen::Base::String& value);
    /// Adds an entry that is not there yet, else E_OBJ_ALREADY_EXIST. A value of several lines is E_INVALID_ARG.
    result AddValue(const Tizen::Base::String& section, const Tizen::Base::String& key,
                    const Tizen::Base::String& value);

    /// Replaces the file whole, if anything was changed; the changes are on the disk when this returns. E_IO when that
    /// failed: the file is as it was, and the changes wait for another Flush.
    result Flush();

private:
    struct Opened;

    enum class Entry { kPresent, kNew };
    result Write(const Tizen::Base::String& section, const Tizen::Base::String& key, const Tizen::Base::String& value,
                 Entry entry);

    std::unique_ptr<Opened> pOpened_;
};

}  // namespace Io
}  // namespace Tizen
