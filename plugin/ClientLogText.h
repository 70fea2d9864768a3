// The text WriteLog hands to the client's logger.
#pragma once

#include <cstddef>
#include <string>

// The client's log receives formats as written: conversion specifications such as "%d" are
// kept literally rather than filled, and "%%" gives one "%". At most 255 characters.
std::string clientLogMessage(const char* format);

// "BQLColloqPlugin v." + version + ": " + message.
std::string clientLogLine(const char* version, const std::string& message);

constexpr std::size_t kClientLogMessageCapacity = 256;
