// The library is built with hidden visibility; this marks the functions of its public headers.
#pragma once

#define BQLUTIL_EXPORT __attribute__((visibility("default")))
