#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace host {

/// The bytes of a sound file, wherever they lie. One thread at a time.
class ByteSource {
public:
    virtual ~ByteSource() = default;

    [[nodiscard]] virtual std::int64_t Size() const = 0;
    /// Fills `bytes` from `offset`; fewer only at the end or after a failure of the disk. Returns how many.
    virtual std::size_t ReadAt(std::int64_t offset, std::span<std::byte> bytes) = 0;
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

private:
    std::vector<std::byte> content_;
};

/// A file that stays on the disk, for sounds too long to hold.
class FileSource final : public ByteSource {
public:
    /// Null when it cannot be read.
    [[nodiscard]] static std::unique_ptr<FileSource> Open(const std::string& path) {
        std::unique_ptr<FileSource> source(new FileSource(std::fopen(path.c_str(), "rb")));
        if (source->file_ == nullptr || std::fseek(source->file_.get(), 0, SEEK_END) != 0) return nullptr;
        source->size_ = std::ftell(source->file_.get());
        // A folder opens as well, and is of an absurd size; it cannot be read.
        std::byte first{};
        if (source->size_ < 0 || (source->size_ > 0 && source->ReadAt(0, {&first, 1}) != 1)) return nullptr;
        return source;
    }

    [[nodiscard]] std::int64_t Size() const override { return size_; }
    std::size_t ReadAt(std::int64_t offset, std::span<std::byte> bytes) override {
        if (std::fseek(file_.get(), static_cast<long>(offset), SEEK_SET) != 0) return 0;
        return std::fread(bytes.data(), 1, bytes.size(), file_.get());
    }

private:
    struct Closer {
        void operator()(std::FILE* file) const noexcept { std::fclose(file); }
    };

    explicit FileSource(std::FILE* file) : file_(file) {}

    std::unique_ptr<std::FILE, Closer> file_;
    std::int64_t size_ = 0;
};

}  // namespace host
