// The interfaces the plug-in implements are called by the runtime through their tables: every
// slot of ICall and IContact, including the destructor pair and IContact::Release after it, and
// both operations of each event subscriber interface, sit where the runtime expects them.
#include <gtest/gtest.h>

#include <cstdint>
#include <cwchar>
#include <new>
#include <string>

#include "OperationLog.h"
#include "RawVtable.h"
#include "vexilrt/VexilRTSDKLite.h"

namespace {

using sdktest::callSlot;
using sdktest::OperationLog;

struct RecordingCall final : ICall {
    explicit RecordingCall(OperationLog* destructionLog) : destructions(destructionLog) {}
    ~RecordingCall() override { destructions->record("~RecordingCall"); }
    RecordingCall(const RecordingCall&) = delete;
    RecordingCall& operator=(const RecordingCall&) = delete;

    int getID() override {
        log.record("getID");
        return id;
    }
    void setID(int value) override {
        log.record("setID", value);
        id = value;
    }
    int getConferenceID() override {
        log.record("getConferenceID");
        return conferenceId;
    }
    void setConferenceID(int value) override {
        log.record("setConferenceID", value);
        conferenceId = value;
    }
    bool getInConference() override {
        log.record("getInConference");
        return inConference;
    }
    void setInConference(bool value) override {
        log.record("setInConference", value);
        inConference = value;
    }

    OperationLog* destructions;
    OperationLog log;
    int id = 0;
    int conferenceId = 0;
    bool inConference = false;
};

struct RecordingContact final : IContact {
    explicit RecordingContact(OperationLog* destructionLog) : destructions(destructionLog) {}
    ~RecordingContact() override { destructions->record("~RecordingContact"); }
    RecordingContact(const RecordingContact&) = delete;
    RecordingContact& operator=(const RecordingContact&) = delete;

    const wchar_t* getName() const override { return read("getName", name); }
    void setName(const wchar_t* text) override { write("setName", name, text); }
    const wchar_t* getFriendlyName() const override { return read("getFriendlyName", friendlyName); }
    void setFriendlyName(const wchar_t* text) override { write("setFriendlyName", friendlyName, text); }
    int getID() const override {
        log.record("getID");
        return id;
    }
    void setID(int value) override {
        log.record("setID", value);
        id = value;
    }
    const wchar_t* getSipUri() const override { return read("getSipUri", sipUri); }
    void setSipUri(const wchar_t* text) override { write("setSipUri", sipUri, text); }
    const wchar_t* getPhone() const override { return read("getPhone", phone); }
    void setPhone(const wchar_t* text) override { write("setPhone", phone, text); }
    const wchar_t* getEmail() const override { return read("getEmail", email); }
    void setEmail(const wchar_t* text) override { write("setEmail", email, text); }
    const wchar_t* getWorkPhone() const override { return read("getWorkPhone", workPhone); }
    void setWorkPhone(const wchar_t* text) override { write("setWorkPhone", workPhone, text); }
    const wchar_t* getMobilePhone() const override { return read("getMobilePhone", mobilePhone); }
    void setMobilePhone(const wchar_t* text) override { write("setMobilePhone", mobilePhone, text); }
    const wchar_t* getHomePhone() const override { return read("getHomePhone", homePhone); }
    void setHomePhone(const wchar_t* text) override { write("setHomePhone", homePhone, text); }
    void Release() override {
        destructions->record("Release");
        delete this;
    }

    OperationLog* destructions;
    mutable OperationLog log;
    std::wstring name, friendlyName, sipUri, phone, email, workPhone, mobilePhone, homePhone;
    int id = 0;

private:
    const wchar_t* read(const char* operation, const std::wstring& field) const {
        log.record(operation);
        return field.c_str();
    }
    void write(const char* operation, std::wstring& field, const wchar_t* text) {
        log.record(operation, text);
        field = text;
    }
};

struct RecordingCallEvents final : ICallEvents {
    bool OnCallStateChanged(const CallStateEventArgs& args) override {
        log.record("OnCallStateChanged", args.callId, args.callState, static_cast<const wchar_t*>(args.devicePath));
        return true;
    }
    bool OnCallRequest(const CallRequestEventArgs& args) override {
        log.record("OnCallRequest", static_cast<const wchar_t*>(args.number),
                   static_cast<const wchar_t*>(args.alternateNumber), static_cast<const wchar_t*>(args.devicePath));
        return false;
    }
    OperationLog log;
};

struct RecordingSessionManagerEvents final : ISessionManagerEvents {
    bool OnCallStateChanged(const CallStateEventArgs& args) override {
        log.record("OnCallStateChanged", args.callId, args.callState, static_cast<const wchar_t*>(args.devicePath));
        return true;
    }
    bool OnDeviceStateChanged(const DeviceStateEventArgs& args) override {
        log.record("OnDeviceStateChanged", args.state, static_cast<const wchar_t*>(args.devicePath));
        return false;
    }
    OperationLog log;
};

TEST(CallVtable, IdAccessorsAreSlotsZeroAndOne) {
    OperationLog destructions;
    RecordingCall call(&destructions);
    ICall* object = &call;
    callSlot<void(int)>(object, 1, 17);
    EXPECT_EQ(call.log.last(), "setID(17)");
    EXPECT_EQ(call.id, 17);
    EXPECT_EQ(callSlot<int()>(object, 0), 17);
    EXPECT_EQ(call.log.last(), "getID()");
}

TEST(CallVtable, ConferenceIdAccessorsAreSlotsTwoAndThree) {
    OperationLog destructions;
    RecordingCall call(&destructions);
    ICall* object = &call;
    callSlot<void(int)>(object, 3, 5);
    EXPECT_EQ(call.log.last(), "setConferenceID(5)");
    EXPECT_EQ(call.conferenceId, 5);
    EXPECT_EQ(callSlot<int()>(object, 2), 5);
    EXPECT_EQ(call.log.last(), "getConferenceID()");
}

TEST(CallVtable, InConferenceAccessorsAreSlotsFourAndFive) {
    OperationLog destructions;
    RecordingCall call(&destructions);
    ICall* object = &call;
    callSlot<void(bool)>(object, 5, true);
    EXPECT_EQ(call.log.last(), "setInConference(true)");
    EXPECT_TRUE(call.inConference);
    EXPECT_TRUE(callSlot<bool()>(object, 4));
    EXPECT_EQ(call.log.last(), "getInConference()");
}

TEST(CallVtable, CompleteObjectDestructorIsSlotSixAndFreesNothing) {
    OperationLog destructions;
    alignas(RecordingCall) unsigned char storage[sizeof(RecordingCall)];
    ICall* object = new (storage) RecordingCall(&destructions);
    callSlot<void()>(object, 6);
    EXPECT_EQ(destructions.last(), "~RecordingCall()");
    EXPECT_EQ(destructions.size(), 1u);
}

TEST(CallVtable, DeletingDestructorIsSlotSevenAndFreesTheObject) {
    OperationLog destructions;
    ICall* object = new RecordingCall(&destructions);
    callSlot<void()>(object, 7);
    EXPECT_EQ(destructions.last(), "~RecordingCall()");
}

struct TextSlot {
    int getter;
    const char* getterName;
    const char* setterName;
    std::wstring RecordingContact::*field;
};

const TextSlot kContactTextSlots[] = {
    {0, "getName", "setName", &RecordingContact::name},
    {2, "getFriendlyName", "setFriendlyName", &RecordingContact::friendlyName},
    {6, "getSipUri", "setSipUri", &RecordingContact::sipUri},
    {8, "getPhone", "setPhone", &RecordingContact::phone},
    {10, "getEmail", "setEmail", &RecordingContact::email},
    {12, "getWorkPhone", "setWorkPhone", &RecordingContact::workPhone},
    {14, "getMobilePhone", "setMobilePhone", &RecordingContact::mobilePhone},
    {16, "getHomePhone", "setHomePhone", &RecordingContact::homePhone},
};

TEST(ContactVtable, EachTextSetterIsTheSlotAfterItsGetter) {
    OperationLog destructions;
    RecordingContact contact(&destructions);
    IContact* object = &contact;
    for (const TextSlot& slot : kContactTextSlots) {
        SCOPED_TRACE(slot.setterName);
        const std::wstring text = L"text-" + std::to_wstring(slot.getter);
        callSlot<void(const wchar_t*)>(object, static_cast<std::size_t>(slot.getter + 1), text.c_str());
        EXPECT_EQ(contact.log.last(), std::string(slot.setterName) + "(\"text-" + std::to_string(slot.getter) + "\")");
        EXPECT_EQ(contact.*slot.field, text);
    }
}

TEST(ContactVtable, EachTextGetterReadsItsOwnField) {
    OperationLog destructions;
    RecordingContact contact(&destructions);
    for (const TextSlot& slot : kContactTextSlots) {
        contact.*slot.field = std::wstring(L"field-") + static_cast<wchar_t>(L'a' + slot.getter);
    }
    IContact* object = &contact;
    for (const TextSlot& slot : kContactTextSlots) {
        SCOPED_TRACE(slot.getterName);
        const wchar_t* text = callSlot<const wchar_t*()>(object, static_cast<std::size_t>(slot.getter));
        EXPECT_STREQ(text, (contact.*slot.field).c_str());
        EXPECT_EQ(contact.log.last(), std::string(slot.getterName) + "()");
    }
}

TEST(ContactVtable, IdAccessorsAreSlotsFourAndFive) {
    OperationLog destructions;
    RecordingContact contact(&destructions);
    IContact* object = &contact;
    callSlot<void(int)>(object, 5, 42);
    EXPECT_EQ(contact.log.last(), "setID(42)");
    EXPECT_EQ(contact.id, 42);
    EXPECT_EQ(callSlot<int()>(object, 4), 42);
    EXPECT_EQ(contact.log.last(), "getID()");
}

TEST(ContactVtable, CompleteObjectDestructorIsSlotEighteen) {
    OperationLog destructions;
    alignas(RecordingContact) unsigned char storage[sizeof(RecordingContact)];
    IContact* object = new (storage) RecordingContact(&destructions);
    callSlot<void()>(object, 18);
    EXPECT_EQ(destructions.last(), "~RecordingContact()");
    EXPECT_EQ(destructions.size(), 1u);
}

TEST(ContactVtable, DeletingDestructorIsSlotNineteen) {
    OperationLog destructions;
    IContact* object = new RecordingContact(&destructions);
    callSlot<void()>(object, 19);
    EXPECT_EQ(destructions.last(), "~RecordingContact()");
    EXPECT_EQ(destructions.size(), 1u);
}

TEST(ContactVtable, ReleaseIsSlotTwentyAfterBothDestructorEntries) {
    OperationLog destructions;
    IContact* object = new RecordingContact(&destructions);
    callSlot<void()>(object, 20);
    ASSERT_EQ(destructions.size(), 2u);
    EXPECT_EQ(destructions.last(), "~RecordingContact()");
}

CallStateEventArgs makeCallState() {
    CallStateEventArgs args{};
    args.callId = 12;
    args.callState = CALL_STATE_HOLD_CALL;
    std::wcscpy(args.devicePath, L"hid/vid_2f0c&pid_ac27/S1");
    return args;
}

TEST(CallEventsVtable, OnCallStateChangedIsSlotZero) {
    RecordingCallEvents events;
    ICallEvents* object = &events;
    const CallStateEventArgs args = makeCallState();
    EXPECT_TRUE(callSlot<bool(const CallStateEventArgs&)>(object, 0, args));
    EXPECT_EQ(events.log.last(), "OnCallStateChanged(12,3,\"hid/vid_2f0c&pid_ac27/S1\")");
}

TEST(CallEventsVtable, OnCallRequestIsSlotOne) {
    RecordingCallEvents events;
    ICallEvents* object = &events;
    CallRequestEventArgs args{};
    std::wcscpy(args.number, L"5551234");
    std::wcscpy(args.alternateNumber, L"5559876");
    std::wcscpy(args.devicePath, L"hid/vid_2f0c&pid_0123/S2");
    EXPECT_FALSE(callSlot<bool(const CallRequestEventArgs&)>(object, 1, args));
    EXPECT_EQ(events.log.last(), "OnCallRequest(\"5551234\",\"5559876\",\"hid/vid_2f0c&pid_0123/S2\")");
}

TEST(SessionManagerEventsVtable, OnCallStateChangedIsSlotZero) {
    RecordingSessionManagerEvents events;
    ISessionManagerEvents* object = &events;
    const CallStateEventArgs args = makeCallState();
    EXPECT_TRUE(callSlot<bool(const CallStateEventArgs&)>(object, 0, args));
    EXPECT_EQ(events.log.last(), "OnCallStateChanged(12,3,\"hid/vid_2f0c&pid_ac27/S1\")");
}

TEST(SessionManagerEventsVtable, OnDeviceStateChangedIsSlotOne) {
    RecordingSessionManagerEvents events;
    ISessionManagerEvents* object = &events;
    DeviceStateEventArgs args{};
    args.state = DEVICE_STATE_REMOVED;
    std::wcscpy(args.devicePath, L"hid/vid_2f0c&pid_ac27/S1");
    EXPECT_FALSE(callSlot<bool(const DeviceStateEventArgs&)>(object, 1, args));
    EXPECT_EQ(events.log.last(), "OnDeviceStateChanged(2,\"hid/vid_2f0c&pid_ac27/S1\")");
}

}  // namespace
