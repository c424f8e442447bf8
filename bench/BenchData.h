// The benchmark corpus in bench/data (MERO_BENCH_DATA is set by the build).
#pragma once

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace MeroBench {

inline std::filesystem::path dataPath(const std::string& name)
{
    return std::filesystem::path(MERO_BENCH_DATA) / name;
}

inline std::string readFile(const std::filesystem::path& path)
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

inline std::string readDataFile(const std::string& name)
{
    return readFile(dataPath(name));
}

}  // namespace MeroBench
