// Splits one line of a scenario into words: blanks separate, "double quotes" keep blanks (with
// \" and \\ inside), and a word that begins with # outside quotes starts a comment (so DTMF
// keys such as 12# stay one word; a lone # key is written "#").
#pragma once

#include <string>
#include <vector>

namespace colloqsim {

// False and a reason when a quote is not closed.
bool tokenize(const std::string& line, std::vector<std::string>* words, std::string* error);

}  // namespace colloqsim
