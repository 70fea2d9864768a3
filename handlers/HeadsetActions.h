// What the two handlers do alike when a headset button reaches the client.
#pragma once

#include <string>

#include "colloq/AccessoryAPI.h"

class BQLColloqPlugin;
struct BQLColloqEvent;

namespace headsetactions {

// The common start of handling a headset event: the "CallID" line, then the client's table
// and the event's device are required. Returns the table, or null when the event stops here.
Accessory_CallControlAPI_v1_0_t* beginHeadsetEvent(BQLColloqPlugin& plugin, const BQLColloqEvent& event);

// Buttons that map to one client operation each; both handlers log them under the runtime's
// code names.
enum class Button { Accept, Resume, MuteOn, MuteOff, Reject };
void pressButton(Button button, BQLColloqPlugin& plugin, Accessory_CallControlAPI_v1_0_t& api,
                 const std::string& device);

// One send-DTMF per key, in order, after the key line; the runtime's "255" means no key.
void sendDtmfKeys(BQLColloqPlugin& plugin, Accessory_CallControlAPI_v1_0_t& api, const std::string& device,
                  const std::string& keys);

// The headset's hold button only acts while exactly one call is tracked (the case line is
// written in every case).
void holdIfSingleCall(BQLColloqPlugin& plugin, Accessory_CallControlAPI_v1_0_t& api, const std::string& device);

// How the two handlers differ when they end a call for the headset: the direct one logs that
// end call "fails" after every request and leaves the mute flag; the hub one logs end call's
// result and clears the flag with its unmute.
enum class EndCallStyle { Direct, Hub };

// The headset's end button: a call of another vendor's device is left alone; a muted call is
// unmuted first; the call is marked to end on connection, whatever end call returned.
void endCallFromHeadset(BQLColloqPlugin& plugin, Accessory_CallControlAPI_v1_0_t& api, int callId,
                        const std::string& device, EndCallStyle style);

// The client's identifier of the maker's device with this product name, "" for no name: the
// first "." and then the first "-" of the name become "_".
std::string clientDeviceIdFromName(const std::string& name);

}  // namespace headsetactions
