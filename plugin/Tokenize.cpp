#include "plugin/Tokenize.h"

std::vector<std::string> Tokenize(const std::string& text, const std::string& delimiters) {
    std::vector<std::string> tokens;
    std::string::size_type start = text.find_first_not_of(delimiters);
    while (start != std::string::npos) {
        const std::string::size_type end = text.find_first_of(delimiters, start);
        tokens.push_back(text.substr(start, end == std::string::npos ? std::string::npos : end - start));
        start = text.find_first_not_of(delimiters, end);
    }
    return tokens;
}

int TokenizeVersion(int& major, int& minor, int& build, int& revision, const std::string& version) {
    const std::vector<std::string> parts = Tokenize(version, ".");
    if (parts.size() != 4) {
        return -1;
    }
    major = std::stoi(parts[0]);
    minor = std::stoi(parts[1]);
    build = std::stoi(parts[2]);
    revision = std::stoi(parts[3]);
    return 0;
}
