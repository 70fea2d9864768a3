#include "calls/BQLColloqCall.h"

BQLColloqCall::BQLColloqCall(Accessory_CallInfo_v1_0_t* info)
    : id(info->callId),
      inConference(info->conference != 0),
      state(stateFromClientState(info->callState)),
      contact(std::make_shared<BQLColloqContact>(info)) {}

BQLColloqCall::BQLColloqCall(Accessory_CallInfo_v1_0_t* info, BQLColloqCallState initialState,
                             BQLColloqContact& callContact)
    : id(info->callId),
      inConference(info->conference != 0),
      state(initialState),
      contact(std::make_shared<BQLColloqContact>(callContact)) {}

BQLColloqCallState BQLColloqCall::stateFromClientState(int32_t clientState) {
    switch (clientState) {
        case 3:
        case 6:
            return BQL_CALL_OUTGOING;
        case 7:
            return BQL_CALL_INCOMING;
        case 9:
        case 10:
            return BQL_CALL_CONNECTED;
        default:  // 0, 1, 2, 4, 5, 8, and anything the client does not define
            return BQL_CALL_IDLE;
    }
}

int BQLColloqCall::getID() { return id; }
void BQLColloqCall::setID(int value) { id = value; }
int BQLColloqCall::getConferenceID() { return conferenceId; }
void BQLColloqCall::setConferenceID(int value) { conferenceId = value; }
bool BQLColloqCall::getInConference() { return inConference; }
void BQLColloqCall::setInConference(bool value) { inConference = value; }

BQLColloqCallState BQLColloqCall::getState() const { return state.load(); }
void BQLColloqCall::setState(BQLColloqCallState value) { state.exchange(value); }
std::shared_ptr<BQLColloqContact> BQLColloqCall::getContact() { return contact; }
