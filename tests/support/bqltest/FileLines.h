// Reading a text file, a log above all, back in tests.
#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace bqltest {

// Every line of the file; none when it does not exist.
inline std::vector<std::string> readLines(const std::filesystem::path& file) {
    std::vector<std::string> lines;
    std::ifstream in(file);
    for (std::string line; std::getline(in, line);) {
        lines.push_back(line);
    }
    return lines;
}

inline int countLinesContaining(const std::vector<std::string>& lines, const std::string& text) {
    return static_cast<int>(std::count_if(
        lines.begin(), lines.end(), [&text](const std::string& line) { return line.find(text) != std::string::npos; }));
}

inline bool endsWith(const std::string& text, const std::string& end) {
    return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

}  // namespace bqltest
