#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace orbel::test {

inline void writeBytes(const std::string& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

inline std::string readBytes(const std::string& path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

/// A folder of its own for one test, removed with everything in it.
class TestFolder {
public:
    TestFolder() {
        std::string name = std::filesystem::path(testing::TempDir()) / "orbel-test-XXXXXX";
        m_path = mkdtemp(name.data());
    }
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;
    ~TestFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }

    [[nodiscard]] const std::filesystem::path& path() const { return m_path; }
    [[nodiscard]] std::string operator/(const std::string& name) const { return m_path / name; }
    /// Writes a file and gives its path.
    [[nodiscard]] std::string file(const std::string& name, const std::string& bytes) const {
        writeBytes(m_path / name, bytes);
        return m_path / name;
    }
    /// What is in the folder, in alphabetical order.
    [[nodiscard]] std::vector<std::string> fileNames() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(m_path)) {
            names.push_back(entry.path().filename());
        }
        std::sort(names.begin(), names.end());
        return names;
    }
    [[nodiscard]] std::size_t fileCount() const {
        const std::filesystem::directory_iterator files(m_path);
        return static_cast<std::size_t>(std::distance(begin(files), end(files)));
    }

private:
    std::filesystem::path m_path;
};

} // namespace orbel::test
