// tempFolder.h: a folder that goes with the test.
#pragma once

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace orv {

class TempFolder {
public:
    TempFolder()
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "orv-test-XXXXXX").string();
        if (::mkdtemp(pattern.data()) == nullptr) std::abort();
        path_ = pattern;
    }
    ~TempFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }
    [[nodiscard]] std::string file(const std::string& name) const
    {
        return (path_ / name).string();
    }
    /// Writes a text file and returns its name.
    std::string Write(const std::string& name, const std::string& text) const
    {
        std::ofstream(path_ / name, std::ios::binary) << text;
        return file(name);
    }
    [[nodiscard]] int fileCount() const
    {
        return static_cast<int>(std::distance(std::filesystem::directory_iterator(path_),
                                              std::filesystem::directory_iterator()));
    }

private:
    std::filesystem::path path_;
};

}  // namespace orv
