#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

namespace Examples {

// A new folder that goes away with the object.
class TemporaryFolder {
public:
    TemporaryFolder()
    {
        std::string name = (std::filesystem::temp_directory_path() / "rvcore-XXXXXX").string();
        if (!mkdtemp(name.data()))
            throw std::runtime_error("cannot make " + name);
        m_path = name;
    }
    ~TemporaryFolder() { std::filesystem::remove_all(m_path); }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& path() const { return m_path; }

    // Makes a file of that many bytes, with the folders around it.
    void addFile(const std::string& name, std::size_t size) const
    {
        const auto file = m_path / name;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << std::string(size, 'x');
    }

private:
    std::filesystem::path m_path;
};

} // namespace Examples
