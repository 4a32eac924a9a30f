#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include <unistd.h>

namespace orbel::fxtest {

/// A folder of this process alone, gone at its end.
class TempFolder {
public:
    TempFolder() { std::filesystem::create_directories(m_path); }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;
    ~TempFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    [[nodiscard]] const std::filesystem::path& path() const { return m_path; }
    /// Writes a file and gives its path.
    [[nodiscard]] std::string file(const std::string& name, const std::string& text) const {
        std::ofstream(m_path / name) << text;
        return (m_path / name).string();
    }

private:
    const std::filesystem::path m_path =
        std::filesystem::path(testing::TempDir()) / ("orbel-fxplug-" + std::to_string(getpid()));
};

} // namespace orbel::fxtest
