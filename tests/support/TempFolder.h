// A fresh folder for the files of one test, removed with everything in it afterwards, so that
// reader and writer tests work on real files without leaving any behind.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace vellum::test {

class TempFolder {
  public:
    TempFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "vellum_test_XXXXXX");
        if (::mkdtemp(pattern.data()) != nullptr)
            path_ = pattern;
    }
    ~TempFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    // The folder itself, or the file `name` in it.
    std::string path(const std::string& name = {}) const {
        return name.empty() ? path_.string() : (path_ / name).string();
    }
    // Writes `text` to the file `name` in the folder (making the folders the name holds) and
    // returns its path.
    std::string write(const std::string& name, const std::string& text) const {
        std::error_code ignored;
        std::filesystem::create_directories((path_ / name).parent_path(), ignored);
        std::ofstream(path(name), std::ios::binary) << text;
        return path(name);
    }
    // Copies a file into the folder under `name` and returns the copy's path.
    std::string copy(const std::string& file, const std::string& name) const {
        std::filesystem::copy_file(file, path_ / name,
                                   std::filesystem::copy_options::overwrite_existing);
        return path(name);
    }
    static std::string read(const std::string& file) {
        std::ifstream in(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    }
    const std::filesystem::path& root() const { return path_; }

  private:
    std::filesystem::path path_;
};

}  // namespace vellum::test
