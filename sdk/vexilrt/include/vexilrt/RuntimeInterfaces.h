// Interfaces the device runtime owns and hands out. Position N of an interface is its N-th
// virtual function; positions a softphone does not use are reservedN() placeholders so that
// every used position lands exactly. No interface has a public destructor: objects go back
// through Release() where they have one, the rest stay owned by the runtime.
#pragma once

#include <cstdint>

#include "vexilrt/CallInterfaces.h"

class ISession;
class ISoftphoneDefaults;
class IDevice;
class IHostCommand;
class IDeviceEnumerator;
class IDeviceEnumeration;
class ICallCommand;

// Session plug-in statuses of ISessionManager::setPluginStatus.
enum eVexilPluginStatus : int32_t {
    VEXIL_PLUGIN_ACTIVE = 2,
    VEXIL_PLUGIN_INACTIVE = 5,
};

// Feature numbers of IHostCommand::isFeatureSupported.
enum eVexilFeature : int32_t {
    VEXIL_FEATURE_DISPLAY = 18,
};

class ISessionManager {
public:
    virtual int32_t reserved1() = 0;
    virtual int32_t unregisterSession(ISession* session) = 0;                  // 2
    virtual int32_t setPluginStatus(int32_t pluginId, int32_t status) = 0;     // 3
    virtual int32_t reserved4() = 0;
    virtual int32_t reserved5() = 0;
    virtual int32_t reserved6() = 0;
    virtual int32_t registerCallback(ISessionManagerEvents* events) = 0;       // 7
    virtual int32_t unregisterCallback(ISessionManagerEvents* events) = 0;     // 8
    virtual int32_t getSoftphoneDefaults(ISoftphoneDefaults** defaults) = 0;   // 9

protected:
    ~ISessionManager() = default;
};

class ISoftphoneDefaults {
public:
    virtual int32_t reserved1() = 0;
    virtual int32_t reserved2() = 0;
    virtual int32_t reserved3() = 0;
    virtual int32_t reserved4() = 0;
    virtual int32_t reserved5() = 0;
    virtual int32_t reserved6() = 0;
    virtual int32_t reserved7() = 0;
    virtual int32_t reserved8() = 0;
    virtual int32_t reserved9() = 0;
    virtual int32_t reserved10() = 0;
    virtual int32_t reserved11() = 0;
    virtual int32_t reserved12() = 0;
    virtual int32_t reserved13() = 0;
    virtual int32_t setDefaultSoftphone(int32_t pluginId) = 0;                 // 14

protected:
    ~ISoftphoneDefaults() = default;
};

class ISessionManagerInt {
public:
    virtual int32_t registerSession(const wchar_t* name, int32_t kind, ISession** session) = 0; // 1
    virtual int32_t reserved2() = 0;
    virtual int32_t reserved3() = 0;
    virtual int32_t reserved4() = 0;
    virtual int32_t reserved5() = 0;
    virtual int32_t reserved6() = 0;
    virtual int32_t reserved7() = 0;
    virtual int32_t reserved8() = 0;
    virtual int32_t reserved9() = 0;
    virtual int32_t reserved10() = 0;
    virtual int32_t reserved11() = 0;
    virtual int32_t reserved12() = 0;
    virtual int32_t getDeviceEnumerator(IDeviceEnumerator** enumerator) = 0;  // 13
    virtual int32_t reserved14() = 0;
    virtual int32_t reserved15() = 0;
    virtual int32_t reserved16() = 0;
    virtual int32_t refreshDevices(int32_t mode) = 0;                         // 17
    virtual int32_t reserved18() = 0;
    virtual int32_t setActiveDevice(const wchar_t* path) = 0;                 // 19; -1 = refused

protected:
    ~ISessionManagerInt() = default;
};

class ISession {
public:
    virtual void Release() = 0;                                               // 1
    virtual int32_t reserved2() = 0;
    virtual int32_t getPluginId(int32_t* pluginId) = 0;                       // 3
    virtual int32_t reserved4() = 0;
    virtual int32_t registerCallback(ICallEvents* events) = 0;                // 5
    virtual int32_t unregisterCallback(ICallEvents* events) = 0;              // 6
    virtual int32_t getCallCommand(ICallCommand** command) = 0;               // 7
    virtual int32_t reserved8() = 0;
    virtual int32_t getActiveDevice(IDevice** device) = 0;                    // 9: non-zero, no device, when none is active

protected:
    ~ISession() = default;
};

class ICallCommand {
public:
    virtual void Release() = 0;                                                          // 1
    virtual int32_t incomingCall(ICall* call, IContact* contact, int32_t a, int32_t b) = 0; // 2
    virtual int32_t outgoingCall(ICall* call, IContact* contact, int32_t a) = 0;         // 3
    virtual int32_t terminateCall(ICall* call) = 0;                                      // 4
    virtual int32_t answeredCall(ICall* call) = 0;                                       // 5
    virtual int32_t holdCall(ICall* call) = 0;                                           // 6
    virtual int32_t resumeCall(ICall* call) = 0;                                         // 7
    virtual int32_t insertCall(ICall* call, IContact* contact) = 0;                      // 8
    virtual int32_t setMute(bool mute) = 0;                                              // 9

protected:
    ~ICallCommand() = default;
};

class IDevice {
public:
    virtual void Release() = 0;                                                  // 1
    virtual int32_t reserved2() = 0;
    virtual int32_t reserved3() = 0;
    virtual int32_t reserved4() = 0;
    virtual int32_t getDevicePath(wchar_t* buffer, int32_t capacity) = 0;        // 5
    virtual int32_t reserved6() = 0;
    virtual int32_t getProductName(wchar_t* buffer, int32_t capacity) = 0;       // 7
    virtual int32_t reserved8() = 0;
    virtual int32_t reserved9() = 0;
    virtual int32_t reserved10() = 0;
    virtual int32_t reserved11() = 0;
    virtual int32_t reserved12() = 0;
    virtual int32_t reserved13() = 0;
    virtual int32_t reserved14() = 0;
    virtual int32_t getHostCommand(IHostCommand** command) = 0;                  // 15

protected:
    ~IDevice() = default;
};

// Owned by its device; never released by the caller.
class IHostCommand {
public:
    virtual int32_t reserved1() = 0;
    virtual int32_t reserved2() = 0;
    virtual int32_t reserved3() = 0;
    virtual int32_t reserved4() = 0;
    virtual int32_t reserved5() = 0;
    virtual int32_t reserved6() = 0;
    virtual int32_t reserved7() = 0;
    virtual bool isFeatureSupported(int32_t feature) = 0;                        // 8

protected:
    ~IHostCommand() = default;
};

// Starts before the first device: moveNext() must be called before current().
class IDeviceEnumerator {
public:
    virtual void Release() = 0;                     // 1
    virtual IDevice* current() = 0;                 // 2: a new reference, may be null
    virtual int32_t moveNext() = 0;                 // 3: non-zero when it moved onto a device

protected:
    ~IDeviceEnumerator() = default;
};

class IDeviceManager {
public:
    virtual int32_t reserved1() = 0;
    virtual int32_t reserved2() = 0;
    virtual int32_t reserved3() = 0;
    virtual int32_t reserved4() = 0;
    virtual int32_t getDevices(IDeviceEnumeration** devices) = 0;               // 5

protected:
    ~IDeviceManager() = default;
};

class IDeviceEnumeration {
public:
    virtual void Release() = 0;                     // 1
    virtual int32_t reserved2() = 0;
    virtual int32_t count() = 0;                    // 3

protected:
    ~IDeviceEnumeration() = default;
};
