// Names of the two message ports between the plug-in and the hub application.
#pragma once

// The hub's port; the plug-in sends to it.
inline constexpr const char* MAC_PIPE_HUB_SIDE_ = "com.bqlhub.hub";
// The plug-in's own port; the plug-in listens on it.
inline constexpr const char* MAC_PIPE_COLLOQ_SIDE_ = "com.bqlhub.colloq";
