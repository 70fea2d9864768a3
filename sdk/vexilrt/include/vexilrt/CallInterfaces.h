// Interfaces the softphone plug-in implements and hands to the runtime: its calls, their
// contacts, and the two event subscribers. Slot order is part of the binary contract.
#pragma once

#include "vexilrt/Events.h"

class ICall {
public:
    virtual int getID() = 0;
    virtual void setID(int id) = 0;
    virtual int getConferenceID() = 0;
    virtual void setConferenceID(int id) = 0;
    virtual bool getInConference() = 0;
    virtual void setInConference(bool inConference) = 0;
    virtual ~ICall() = default;
};

// Getters never return null.
class IContact {
public:
    virtual const wchar_t* getName() const = 0;
    virtual void setName(const wchar_t* name) = 0;
    virtual const wchar_t* getFriendlyName() const = 0;
    virtual void setFriendlyName(const wchar_t* name) = 0;
    virtual int getID() const = 0;
    virtual void setID(int id) = 0;
    virtual const wchar_t* getSipUri() const = 0;
    virtual void setSipUri(const wchar_t* uri) = 0;
    virtual const wchar_t* getPhone() const = 0;
    virtual void setPhone(const wchar_t* phone) = 0;
    virtual const wchar_t* getEmail() const = 0;
    virtual void setEmail(const wchar_t* email) = 0;
    virtual const wchar_t* getWorkPhone() const = 0;
    virtual void setWorkPhone(const wchar_t* phone) = 0;
    virtual const wchar_t* getMobilePhone() const = 0;
    virtual void setMobilePhone(const wchar_t* phone) = 0;
    virtual const wchar_t* getHomePhone() const = 0;
    virtual void setHomePhone(const wchar_t* phone) = 0;
    virtual ~IContact() = default;
    virtual void Release() = 0;
};

// Subscribers are owned by the plug-in, which never deletes them through these interfaces.
class ICallEvents {
public:
    virtual bool OnCallStateChanged(const CallStateEventArgs& args) = 0;
    virtual bool OnCallRequest(const CallRequestEventArgs& args) = 0;

protected:
    ~ICallEvents() = default;
};

class ISessionManagerEvents {
public:
    virtual bool OnCallStateChanged(const CallStateEventArgs& args) = 0;
    virtual bool OnDeviceStateChanged(const DeviceStateEventArgs& args) = 0;

protected:
    ~ISessionManagerEvents() = default;
};
