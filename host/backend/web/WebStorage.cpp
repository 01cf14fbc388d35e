#include "backend/web/WebStorage.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "backend/web/Bridge.h"

namespace host {

namespace {

struct MemoryReleaser {
    void operator()(char* text) const noexcept { std::free(text); }
};

class PageInputFile final : public InputFile {
public:
    PageInputFile(std::string path, std::uint64_t size) : path_(std::move(path)), size_(size) {}

    [[nodiscard]] std::uint64_t Size() const override { return size_; }
    [[nodiscard]] std::optional<std::size_t> Read(std::uint64_t offset, std::span<std::byte> bytes) override {
        if (offset >= size_) return 0;
        const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(bytes.size(), size_ - offset));
        web_storage_read(path_.c_str(), static_cast<double>(offset), bytes.data(), static_cast<int>(count));
        return count;
    }

private:
    std::string path_;
    std::uint64_t size_;
};

class PageOutputFile final : public OutputFile {
public:
    explicit PageOutputFile(std::string path) : path_(std::move(path)) {}

    [[nodiscard]] bool Append(std::span<const std::byte> bytes) override {
        if (!problem_.empty()) return false;
        if (!Write(size_, bytes)) return false;
        size_ += bytes.size();
        return true;
    }
    [[nodiscard]] bool Overwrite(std::uint64_t offset, std::span<const std::byte> bytes) override {
        return offset + bytes.size() <= size_ && Write(offset, bytes);
    }
    [[nodiscard]] bool Close() override { return problem_.empty(); }
    [[nodiscard]] const std::string& Problem() const override { return problem_; }

private:
    bool Write(std::uint64_t offset, std::span<const std::byte> bytes) {
        const bool isWritten = web_storage_write(path_.c_str(), static_cast<double>(offset), bytes.data(),
                                                 static_cast<int>(bytes.size())) != 0;
        if (!isWritten) problem_ = "the browser has no room for it";
        return isWritten;
    }

    std::string path_;
    std::uint64_t size_ = 0;
    std::string problem_;
};

}  // namespace

WebStorage::WebStorage(std::string packageRoot, std::string dataRoot)
    : packageRoot_(std::move(packageRoot)), dataRoot_(std::move(dataRoot)) {}

std::optional<FileStamp> WebStorage::Stat(const std::string& path) const {
    const double size = web_storage_size(path.c_str());
    if (size < 0) return std::nullopt;
    return FileStamp{static_cast<std::uint64_t>(size), 0};
}

std::vector<std::string> WebStorage::List(const std::string& folder) const {
    const std::unique_ptr<char, MemoryReleaser> text(web_storage_list(folder.c_str()));
    std::vector<std::string> names;
    std::string_view rest = text.get();
    for (std::size_t end = 0; (end = rest.find('\n')) != std::string_view::npos; rest.remove_prefix(end + 1)) {
        names.emplace_back(rest.substr(0, end));
    }
    std::sort(names.begin(), names.end());
    return names;
}

ReadOutcome WebStorage::Read(const std::string& path, std::size_t limit, std::vector<std::byte>& content) const {
    content.clear();
    const auto stamp = Stat(path);
    if (!stamp) return ReadOutcome::kMissing;
    if (stamp->bytes > limit) return ReadOutcome::kTooLarge;
    content.resize(static_cast<std::size_t>(stamp->bytes));
    web_storage_read(path.c_str(), 0, content.data(), static_cast<int>(content.size()));
    return ReadOutcome::kRead;
}

std::unique_ptr<InputFile> WebStorage::OpenInput(const std::string& path, std::string& problem) const {
    const auto stamp = Stat(path);
    if (!stamp) {
        problem = ReasonOf(ReadOutcome::kMissing);
        return nullptr;
    }
    return std::make_unique<PageInputFile>(path, stamp->bytes);
}

std::unique_ptr<OutputFile> WebStorage::OpenOutput(const std::string& path, std::string& problem) {
    if (path.empty() || path.back() == '/') {
        problem = "it is not a file's name";
        return nullptr;
    }
    web_storage_create(path.c_str());
    return std::make_unique<PageOutputFile>(path);
}

bool WebStorage::MakeFolder(const std::string& /*folder*/) {
    return true;  // A name may have any folders in it.
}

bool WebStorage::Replace(const std::string& path, std::span<const std::byte> content) {
    return web_storage_replace(path.c_str(), content.data(), static_cast<int>(content.size())) != 0;
}

}  // namespace host
