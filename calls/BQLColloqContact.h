// The plug-in's contact: the runtime's IContact, filled from the client's call record.
#pragma once

#include <string>

#include "colloq/AccessoryAPI.h"
#include "vexilrt/CallInterfaces.h"

class BQLColloqContact : public IContact {
public:
    // Name and phone from the record's texts, widened byte by byte; id = the call id.
    explicit BQLColloqContact(Accessory_CallInfo_v1_0_t* info);
    // Copies through other's virtual getters, as it would copy any IContact.
    BQLColloqContact(BQLColloqContact& other);
    BQLColloqContact& operator=(const BQLColloqContact&) = delete;

    const wchar_t* getName() const override;
    void setName(const wchar_t* name) override;
    const wchar_t* getFriendlyName() const override;
    void setFriendlyName(const wchar_t* name) override;
    int getID() const override;
    void setID(int id) override;
    const wchar_t* getSipUri() const override;
    void setSipUri(const wchar_t* uri) override;
    const wchar_t* getPhone() const override;
    void setPhone(const wchar_t* phone) override;
    const wchar_t* getEmail() const override;
    void setEmail(const wchar_t* email) override;
    const wchar_t* getWorkPhone() const override;
    void setWorkPhone(const wchar_t* phone) override;
    const wchar_t* getMobilePhone() const override;
    void setMobilePhone(const wchar_t* phone) override;
    const wchar_t* getHomePhone() const override;
    void setHomePhone(const wchar_t* phone) override;
    ~BQLColloqContact() override = default;
    // Deletes this contact; for temporaries created with new.
    void Release() override;

private:
    std::wstring name;
    std::wstring friendlyName;
    int id = 0;
    std::wstring sipUri;
    std::wstring phone;
    std::wstring email;
    std::wstring workPhone;
    std::wstring mobilePhone;
    std::wstring homePhone;
};
