#include "calls/BQLColloqContact.h"

#include "calls/ClientText.h"

namespace {

std::wstring textOrEmpty(const wchar_t* text) {
    return text ? std::wstring(text) : std::wstring();
}

}  // namespace

BQLColloqContact::BQLColloqContact(Accessory_CallInfo_v1_0_t* info)
    : name(clienttext::widenBytes(clienttext::fromField(info->displayName, sizeof info->displayName))),
      id(info->callId),
      phone(clienttext::widenBytes(clienttext::fromField(info->number, sizeof info->number))) {}

BQLColloqContact::BQLColloqContact(BQLColloqContact& other)
    : IContact(),
      name(textOrEmpty(other.getName())),
      friendlyName(textOrEmpty(other.getFriendlyName())),
      id(other.getID()),
      sipUri(textOrEmpty(other.getSipUri())),
      phone(textOrEmpty(other.getPhone())),
      email(textOrEmpty(other.getEmail())),
      workPhone(textOrEmpty(other.getWorkPhone())),
      mobilePhone(textOrEmpty(other.getMobilePhone())),
      homePhone(textOrEmpty(other.getHomePhone())) {}

const wchar_t* BQLColloqContact::getName() const { return name.c_str(); }
void BQLColloqContact::setName(const wchar_t* text) { name = textOrEmpty(text); }
const wchar_t* BQLColloqContact::getFriendlyName() const { return friendlyName.c_str(); }
void BQLColloqContact::setFriendlyName(const wchar_t* text) { friendlyName = textOrEmpty(text); }
int BQLColloqContact::getID() const { return id; }
void BQLColloqContact::setID(int value) { id = value; }
const wchar_t* BQLColloqContact::getSipUri() const { return sipUri.c_str(); }
void BQLColloqContact::setSipUri(const wchar_t* text) { sipUri = textOrEmpty(text); }
const wchar_t* BQLColloqContact::getPhone() const { return phone.c_str(); }
void BQLColloqContact::setPhone(const wchar_t* text) { phone = textOrEmpty(text); }
const wchar_t* BQLColloqContact::getEmail() const { return email.c_str(); }
void BQLColloqContact::setEmail(const wchar_t* text) { email = textOrEmpty(text); }
const wchar_t* BQLColloqContact::getWorkPhone() const { return workPhone.c_str(); }
void BQLColloqContact::setWorkPhone(const wchar_t* text) { workPhone = textOrEmpty(text); }
const wchar_t* BQLColloqContact::getMobilePhone() const { return mobilePhone.c_str(); }
void BQLColloqContact::setMobilePhone(const wchar_t* text) { mobilePhone = textOrEmpty(text); }
const wchar_t* BQLColloqContact::getHomePhone() const { return homePhone.c_str(); }
void BQLColloqContact::setHomePhone(const wchar_t* text) { homePhone = textOrEmpty(text); }

void BQLColloqContact::Release() { delete this; }
