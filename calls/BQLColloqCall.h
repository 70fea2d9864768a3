// The plug-in's call: the runtime's ICall, with the plug-in's state and the call's own contact.
#pragma once

#include <atomic>
#include <memory>

#include "calls/BQLColloqCallState.h"
#include "calls/BQLColloqContact.h"
#include "colloq/AccessoryAPI.h"
#include "vexilrt/CallInterfaces.h"

class BQLColloqCall : public ICall {
public:
    // For calls loaded from the client's call list: the state comes from the client's own
    // numbering, mapped coarsely; a value outside it reads as idle.
    explicit BQLColloqCall(Accessory_CallInfo_v1_0_t* info);
    // For calls reported by the client's callbacks: keeps its own copy of contact.
    BQLColloqCall(Accessory_CallInfo_v1_0_t* info, BQLColloqCallState state, BQLColloqContact& contact);
    BQLColloqCall(const BQLColloqCall&) = delete;
    BQLColloqCall& operator=(const BQLColloqCall&) = delete;

    int getID() override;
    void setID(int id) override;
    int getConferenceID() override;
    void setConferenceID(int id) override;
    bool getInConference() override;
    void setInConference(bool inConference) override;
    ~BQLColloqCall() override = default;

    // The state is the one field written after the call is published, from several threads.
    BQLColloqCallState getState() const;
    void setState(BQLColloqCallState state);
    std::shared_ptr<BQLColloqContact> getContact();

    // The client's call-state numbering (0 to 10) seen coarsely by the plug-in.
    static BQLColloqCallState stateFromClientState(int32_t clientState);

private:
    int id;
    int conferenceId = 0;
    bool inConference;
    std::atomic<BQLColloqCallState> state{BQL_CALL_IDLE};
    std::shared_ptr<BQLColloqContact> contact;
};
