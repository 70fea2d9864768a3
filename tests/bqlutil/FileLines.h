// Reading a log file back in tests.
#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace bqlutil_test {

inline std::vector<std::string> readLines(const std::filesystem::path& file) {
  std::vector<std::string> lines;
  std::ifstream in(file);
  for (std::string line; std::getline(in, line);) {
    lines.push_back(line);
  }
  return lines;
}

inline std::size_t countLinesContaining(const std::vector<std::string>& lines,
                                        const std::string& text) {
  return static_cast<std::size_t>(std::count_if(
      lines.begin(), lines.end(),
      [&text](const std::string& line) { return line.find(text) != std::string::npos; }));
}

}  // namespace bqlutil_test
