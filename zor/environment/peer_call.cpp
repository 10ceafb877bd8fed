#include "zor/environment/peer_call.h"

#include <systemd/sd-bus.h>

#include <cctype>
#include <cstdint>
#include <cwchar>

#include "zor/environment/files.h"
#include "zor/environment/native_text.h"
#include "zor/environment/registry_store.h"
#include "zor/environment/settings.h"

namespace ZOR {
namespace {

// The longest bus name the bus accepts.
constexpr std::size_t kMaxBusName = 255;
// How long a peer may take to answer.
constexpr std::uint64_t kCallTimeoutUs = 10'000'000;
// The code of a failed call when the bus gives none of its own.
constexpr long kCallFailed = static_cast<long>(0x80004005);

// The bus name of a ProgID, or empty if it makes none (fewer than two elements, an empty element).
std::string busNameOf(const wchar_t* progId) {
    std::string name;
    std::size_t elements = 0;
    bool elementStart = true;
    for (const char c : detail::toUtf8(progId)) {
        if (c == '.') {
            if (elementStart) return {};
            name += c;
            elementStart = true;
            continue;
        }
        if (elementStart) {
            ++elements;
            if (std::isdigit(static_cast<unsigned char>(c))) name += '_';
        }
        elementStart = false;
        const bool plain = std::isalnum(static_cast<unsigned char>(c)) || c == '_' || c == '-';
        name += plain ? c : '_';
    }
    if (elementStart || elements < 2 || name.size() > kMaxBusName) return {};
    return name;
}

// A connection to the session bus, closed at the end of the scope.
class SessionBus {
  public:
    SessionBus() {
        if (sd_bus_open_user(&bus_) < 0) bus_ = nullptr;
        if (bus_ != nullptr) sd_bus_set_method_call_timeout(bus_, kCallTimeoutUs);
    }
    ~SessionBus() { sd_bus_flush_close_unref(bus_); }
    SessionBus(const SessionBus&) = delete;
    SessionBus& operator=(const SessionBus&) = delete;

    sd_bus* get() const { return bus_; }

  private:
    sd_bus* bus_ = nullptr;
};

bool nameHasOwner(sd_bus* bus, const std::string& name) {
    sd_bus_error error = SD_BUS_ERROR_NULL;
    sd_bus_message* reply = nullptr;
    int owned = 0;
    const int rc = sd_bus_call_method(bus, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                                      "org.freedesktop.DBus", "NameHasOwner", &error, &reply, "s",
                                      name.c_str());
    if (rc >= 0 && sd_bus_message_read(reply, "b", &owned) < 0) owned = 0;
    sd_bus_message_unref(reply);
    sd_bus_error_free(&error);
    return rc >= 0 && owned != 0;
}

// The default value of a classes-root key as text.
bool classesDefault(const wchar_t* keyPath, CZorString& value) {
    HKEY key = nullptr;
    if (regOpenKey(HKEY_CLASSES_ROOT, keyPath, KEY_READ, &key) != ERROR_SUCCESS) return false;
    const bool read = regRead(key, L"", value);
    regCloseKey(key);
    return read;
}

}  // namespace

IDispatch::IDispatch(const char* busName) : name_(busName) {}

unsigned long IDispatch::AddRef() {
    return ++references_;
}

unsigned long IDispatch::Release() {
    const unsigned long left = --references_;
    if (left == 0) delete this;
    return left;
}

long IDispatch::SendData(const wchar_t* sender, int code, const wchar_t* text, int& result) {
    if (sender == nullptr || text == nullptr) return E_INVALIDARG;
    SessionBus bus;
    if (bus.get() == nullptr) return kCallFailed;
    sd_bus_error error = SD_BUS_ERROR_NULL;
    sd_bus_message* reply = nullptr;
    const std::string from = detail::toUtf8(sender);
    const std::string message = detail::toUtf8(text);
    long rc = sd_bus_call_method(bus.get(), name_.c_str(), kPeerObjectPath, kPeerInterface,
                                 "SendData", &error, &reply, "sis", from.c_str(),
                                 static_cast<std::int32_t>(code), message.c_str());
    if (rc >= 0) {
        std::int32_t answer = 0;
        if (sd_bus_message_has_signature(reply, "i") > 0 &&
            sd_bus_message_read(reply, "i", &answer) >= 0) {
            result = answer;
            rc = S_OK;
        } else {
            rc = kCallFailed;
        }
    } else {
        rc = kCallFailed;
    }
    sd_bus_message_unref(reply);
    sd_bus_error_free(&error);
    return rc;
}

bool curProgId(CZorString& out, const wchar_t* progId) {
    if (progId == nullptr) return false;
    CZorString key;
    key.format(L"%s\\CurVer", progId);
    return classesDefault(key, out);
}

bool serverFromProgID(const wchar_t* progId, CZorString& path) {
    if (progId == nullptr) return false;
    CZorString id(progId);
    curProgId(id, progId);
    CZorString classId;
    if (!classesDefault(id + L"\\CLSID", classId)) return false;
    CZorString server;
    CZorString key;
    key.format(L"CLSID\\%s\\LocalServer32", static_cast<const wchar_t*>(classId));
    if (!classesDefault(key, server) || !fileExist(server)) {
        key.format(L"Wow6432Node\\CLSID\\%s\\LocalServer32", static_cast<const wchar_t*>(classId));
        if (!classesDefault(key, server)) return false;
    }
    if (server[0] == L'"') server = server.mid(1, 0xFFFFFFFFu);
    if (server.len() > 0 && server[-1] == L'"')
        server = server.left(static_cast<unsigned int>(server.len() - 1));
    path = server;
    return true;
}

long dispatchFromProgID(const wchar_t* progId, IDispatch** dispatch) {
    if (progId == nullptr || dispatch == nullptr) return E_INVALIDARG;
    CZorString id(progId);
    curProgId(id, progId);
    const std::string name = busNameOf(id);
    if (name.empty()) return CO_E_CLASSSTRING;
    SessionBus bus;
    if (bus.get() != nullptr && nameHasOwner(bus.get(), name))
        *dispatch = new IDispatch(name.c_str());
    return S_OK;
}

int msg_send(const wchar_t* progId, int code, const wchar_t* text) {
    if (progId == nullptr || text == nullptr) return -1;
    IDispatch* peer = nullptr;
    if (dispatchFromProgID(progId, &peer) != S_OK || peer == nullptr) return -1;
    int answer = -1;
    const long rc = peer->SendData(L"ZOR", code, text, answer);
    peer->Release();
    return rc == S_OK ? answer : -1;
}

}  // namespace ZOR
