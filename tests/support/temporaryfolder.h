// A folder of its own for a test, removed with everything in it at the end.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>
#include <vector>

class TemporaryFolder
{
public:
    TemporaryFolder()
    {
        std::string name = (std::filesystem::temp_directory_path() / "tavelin-test-XXXXXX").native();
        if (::mkdtemp(name.data()) == nullptr)
            std::abort();
        m_path = name;
    }
    ~TemporaryFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    [[nodiscard]] const std::string& path() const { return m_path; }
    [[nodiscard]] std::string file(const std::string& name) const { return m_path + '/' + name; }
    [[nodiscard]] std::vector<std::string> names() const
    {
        std::vector<std::string> result;
        for (const auto& entry : std::filesystem::directory_iterator(m_path))
            result.push_back(entry.path().filename().native());
        return result;
    }

    static std::string read(const std::string& path)
    {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    static std::vector<std::string> lines(const std::string& path)
    {
        std::ifstream file(path);
        std::vector<std::string> result;
        for (std::string line; std::getline(file, line);)
            result.push_back(line);
        return result;
    }
    static void write(const std::string& path, const std::string& content)
    {
        std::ofstream(path, std::ios::binary) << content;
    }

private:
    std::string m_path;
};
