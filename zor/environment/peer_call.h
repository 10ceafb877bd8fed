// Finding and calling another program, a peer, by its ProgID.
//
// Class registrations live in the classes-root hive of the settings store (registry_store.h):
//   <ProgID>\CurVer                      default value: the versioned ProgID
//   <ProgID>\CLSID                       default value: the class id
//   CLSID\<class id>\LocalServer32       default value: the server's command line
// A running peer is a program on the D-Bus session bus that owns the well-known name of its
// ProgID and serves, at the object path kPeerObjectPath with the interface kPeerInterface, the
// method SendData(s sender, i code, s text) -> i. A ProgID becomes a bus name by turning every
// character other than letters, digits, "_" and "-" into "_" and putting "_" in front of an
// element that starts with a digit: "Zor.Peer.1" is "Zor.Peer._1".
#pragma once

#include <string>

#include "zor/text/string.h"

namespace ZOR {

inline constexpr const char* kPeerObjectPath = "/";
inline constexpr const char* kPeerInterface = "zor.Peer";

// HRESULT-style results of dispatchFromProgID.
inline constexpr long S_OK = 0;
inline constexpr long E_INVALIDARG = static_cast<long>(0x80070057);
inline constexpr long CO_E_CLASSSTRING = static_cast<long>(0x800401F3);  // no valid ProgID

// A running peer. Made by dispatchFromProgID with one reference; Release drops it.
class IDispatch {
  public:
    explicit IDispatch(const char* busName);
    IDispatch(const IDispatch&) = delete;
    IDispatch& operator=(const IDispatch&) = delete;

    unsigned long AddRef();
    // Drops a reference and destroys the object with the last one; returns the references left.
    unsigned long Release();

    // Calls SendData(sender, code, text) on the peer. S_OK with `result` set when the peer
    // answered with a 32-bit integer; a failure code otherwise, with `result` unchanged.
    long SendData(const wchar_t* sender, int code, const wchar_t* text, int& result);

    const char* busName() const { return name_.c_str(); }

  private:
    ~IDispatch() = default;

    std::string name_;
    unsigned long references_ = 1;
};

// The versioned ProgID of `progId` from its CurVer key; false, with `out` unchanged, without one.
bool curProgId(CZorString& out, const wchar_t* progId);

// The executable of a ProgID's local server, with the quotes around it removed (a quote at the
// start, and one at the very end). The 64-bit registration is taken if its file exists, else the
// 32-bit one (Wow6432Node) without a file test. False, with `path` unchanged, if neither is there.
bool serverFromProgID(const wchar_t* progId, CZorString& path);

// Finds the running peer of `progId` (resolved through CurVer first). With a peer, `*dispatch`
// receives it and the result is S_OK; without one (or without a session bus) the result is S_OK
// too, and `*dispatch` stays: the caller has to look at it. CO_E_CLASSSTRING for a ProgID that
// makes no bus name, E_INVALIDARG for null arguments.
long dispatchFromProgID(const wchar_t* progId, IDispatch** dispatch);

// Calls SendData("ZOR", code, text) on the running peer of `progId` and returns its answer; -1
// for a null `progId` or `text`, when no peer runs, or when the call fails or answers with
// anything but a 32-bit integer.
int msg_send(const wchar_t* progId, int code, const wchar_t* text);

}  // namespace ZOR
