// The current user's home folder, for the per-user application-data folder.
#pragma once

#include <string>

#include <sys/types.h>

namespace bqlutil {

// $HOME when set and not empty, else the home folder of the user's account entry. Fills home
// and returns true on success; leaves home alone otherwise.
bool findHomeDirectory(std::string& home);

// The home folder recorded in the account entry of uid. Fills home and returns true when there
// is such an entry with a home folder; leaves home alone otherwise.
bool accountHomeDirectory(uid_t uid, std::string& home);

}  // namespace bqlutil
