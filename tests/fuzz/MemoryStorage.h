#pragma once

#include <algorithm>
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "backend/Storage.h"

/// Files that a target makes up. What is written is refused.
class MemoryStorage final : public host::Storage {
public:
    using Content = std::vector<std::byte>;

    void Put(const std::string& path, Content content) { files_[path] = std::move(content); }

    [[nodiscard]] const std::string& PackageRoot() const override { return root_; }
    [[nodiscard]] const std::string& DataRoot() const override { return root_; }
    [[nodiscard]] std::optional<host::FileStamp> Stat(const std::string& path) const override {
        const auto file = files_.find(path);
        if (file == files_.end()) return std::nullopt;
        return host::FileStamp{file->second.size(), 0};
    }
    [[nodiscard]] std::vector<std::string> List(const std::string& folder) const override {
        std::vector<std::string> names;
        for (const auto& [path, content] : files_) {
            if (path.rfind(folder, 0) == 0) names.push_back(path.substr(folder.size()));
        }
        return names;
    }
    [[nodiscard]] host::ReadOutcome Read(const std::string& path, std::size_t limit, Content& content) const override {
        const auto file = files_.find(path);
        if (file == files_.end()) return host::ReadOutcome::kMissing;
        if (file->second.size() > limit) return host::ReadOutcome::kTooLarge;
        content = file->second;
        return host::ReadOutcome::kRead;
    }
    [[nodiscard]] std::unique_ptr<host::InputFile> OpenInput(const std::string& path,
                                                             std::string& problem) const override {
        const auto file = files_.find(path);
        if (file != files_.end()) return std::make_unique<Input>(file->second);
        problem = host::ReasonOf(host::ReadOutcome::kMissing);
        return nullptr;
    }
    [[nodiscard]] std::unique_ptr<host::OutputFile> OpenOutput(const std::string&, std::string& problem) override {
        problem = "nothing is written here";
        return nullptr;
    }
    [[nodiscard]] bool MakeFolder(const std::string&) override { return false; }
    [[nodiscard]] bool Replace(const std::string&, std::span<const std::byte>) override { return false; }

private:
    class Input final : public host::InputFile {
    public:
        explicit Input(Content content) : content_(std::move(content)) {}

        [[nodiscard]] std::uint64_t Size() const override { return content_.size(); }
        [[nodiscard]] std::optional<std::size_t> Read(std::uint64_t offset, std::span<std::byte> bytes) override {
            if (offset >= content_.size()) return 0;
            const std::size_t count = std::min(bytes.size(), content_.size() - static_cast<std::size_t>(offset));
            std::memcpy(bytes.data(), content_.data() + offset, count);
            return count;
        }

    private:
        Content content_;
    };

    std::string root_ = "/";
    std::map<std::string, Content> files_;
};
