#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <span>
#include <utility>
#include <vector>

#include "backend/Storage.h"

namespace host {

/// The bytes of a sound file, wherever they lie. One thread at a time.
class ByteSource {
public:
    virtual ~ByteSource() = default;

    [[nodiscard]] virtual std::int64_t Size() const = 0;
    /// Fills `bytes` from `offset`; fewer only at the end or after a failure of the disk. Returns how many.
    virtual std::size_t ReadAt(std::int64_t offset, std::span<std::byte> bytes) = 0;
    /// True once the disk has failed: what was not read says nothing of the file.
    [[nodiscard]] virtual bool HasFailed() const noexcept = 0;
};

class MemorySource final : public ByteSource {
public:
    explicit MemorySource(std::vector<std::byte> content) : content_(std::move(content)) {}

    [[nodiscard]] std::int64_t Size() const override { return static_cast<std::int64_t>(content_.size()); }
    std::size_t ReadAt(std::int64_t offset, std::span<std::byte> bytes) override {
        if (offset < 0 || offset >= Size()) return 0;
        const std::size_t count = std::min(bytes.size(), content_.size() - static_cast<std::size_t>(offset));
        std::memcpy(bytes.data(), content_.data() + offset, count);
        return count;
    }
    [[nodiscard]] bool HasFailed() const noexcept override { return false; }

private:
    std::vector<std::byte> content_;
};

/// A file that stays where it is, for sounds too long to hold.
class FileSource final : public ByteSource {
public:
    explicit FileSource(std::unique_ptr<InputFile> file) : file_(std::move(file)) {}

    [[nodiscard]] std::int64_t Size() const override { return static_cast<std::int64_t>(file_->Size()); }
    std::size_t ReadAt(std::int64_t offset, std::span<std::byte> bytes) override {
        std::size_t count = 0;
        // The file may give less at once than there is.
        while (offset >= 0 && count < bytes.size()) {
            const auto got = file_->Read(static_cast<std::uint64_t>(offset) + count, bytes.subspan(count));
            if (!got) hasFailed_ = true;
            if (!got || *got == 0) break;
            count += *got;
        }
        return count;
    }
    [[nodiscard]] bool HasFailed() const noexcept override { return hasFailed_; }

private:
    std::unique_ptr<InputFile> file_;
    bool hasFailed_ = false;
};

}  // namespace host
