// The demo softphone's calls and contacts, as the runtime reads them through ICall and IContact.
#pragma once

#include <string>

#include "vexilrt/VexilRTSDKLite.h"

namespace demo {

class DemoCall final : public ICall {
public:
    explicit DemoCall(int id) : id_(id) {}
    int getID() override { return id_; }
    void setID(int id) override { id_ = id; }
    int getConferenceID() override { return 0; }
    void setConferenceID(int) override {}
    bool getInConference() override { return false; }
    void setInConference(bool) override {}

private:
    int id_;
};

class DemoContact final : public IContact {
public:
    DemoContact(std::wstring name, std::wstring phone) : name_(std::move(name)), phone_(std::move(phone)) {}
    const wchar_t* getName() const override { return name_.c_str(); }
    void setName(const wchar_t* name) override { name_ = name; }
    const wchar_t* getFriendlyName() const override { return name_.c_str(); }
    void setFriendlyName(const wchar_t*) override {}
    int getID() const override { return 0; }
    void setID(int) override {}
    const wchar_t* getSipUri() const override { return L""; }
    void setSipUri(const wchar_t*) override {}
    const wchar_t* getPhone() const override { return phone_.c_str(); }
    void setPhone(const wchar_t* phone) override { phone_ = phone; }
    const wchar_t* getEmail() const override { return L""; }
    void setEmail(const wchar_t*) override {}
    const wchar_t* getWorkPhone() const override { return L""; }
    void setWorkPhone(const wchar_t*) override {}
    const wchar_t* getMobilePhone() const override { return L""; }
    void setMobilePhone(const wchar_t*) override {}
    const wchar_t* getHomePhone() const override { return L""; }
    void setHomePhone(const wchar_t*) override {}
    void Release() override {}

private:
    std::wstring name_;
    std::wstring phone_;
};

}  // namespace demo
