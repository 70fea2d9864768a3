// A block as the pipe delivers it, and the inbox a receiving thread fills with them.
#pragma once

#include <vector>

#include "bqltest/Inbox.h"

using Block = std::vector<unsigned char>;
using BlockInbox = bqltest::Inbox<Block>;
