#include "Tokenizer.h"

namespace colloqsim {

bool tokenize(const std::string& line, std::vector<std::string>* words, std::string* error) {
    words->clear();
    std::string word;
    bool inWord = false;
    bool quoted = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const char c = line[i];
        if (quoted) {
            if (c == '\\' && i + 1 < line.size() && (line[i + 1] == '"' || line[i + 1] == '\\')) {
                word += line[++i];
            } else if (c == '"') {
                quoted = false;
            } else {
                word += c;
            }
            continue;
        }
        if (c == '#' && !inWord) {
            break;
        }
        if (c == ' ' || c == '\t' || c == '\r') {
            if (inWord) {
                words->push_back(word);
                word.clear();
                inWord = false;
            }
            continue;
        }
        inWord = true;
        if (c == '"') {
            quoted = true;
        } else {
            word += c;
        }
    }
    if (quoted) {
        *error = "a quoted text is not closed";
        words->clear();
        return false;
    }
    if (inWord) {
        words->push_back(word);
    }
    return true;
}

}  // namespace colloqsim
