// Versioned application settings in the settings store (registry_store.h).
//
// A host sets a base path and a version once, then reads and writes values by application name
// and value name:
//   <base>\<app>             holds "CurVer", the version the application last registered;
//   <base>\<app>\<curVer>    is the application key that holds the settings.
// A value name may carry a sub-path: "Window\Left" is the value "Left" in the subkey "Window" of
// the application key. Reads look in the user's hive first and fall back on the machine's; writes
// go to the user's hive only. Every keyed call opens and closes its key; nothing is cached.
//
// Below the keyed layer lies the handle layer, on a key the caller has open, with the same three
// value forms: a 32-bit number (REG_DWORD), a text (REG_SZ, or REG_EXPAND_SZ for a path list
// whose paths were folded into environment references) and a text list (REG_MULTI_SZ).
//
// The module-wide state (base path, version, application list) is unguarded: set it up on one
// thread before concurrent use.
#pragma once

#include "zor/environment/registry_store.h"
#include "zor/foundation/array.h"
#include "zor/text/string.h"

namespace ZOR {

// --- Set-up ------------------------------------------------------------------------------------

// Sets the version key's name; a null pointer makes it null, which switches the keyed layer off.
void curVerSet(const wchar_t* version);
// Sets the base path unless `path` is null, and returns the current one, so null is a query.
const wchar_t* regBasePathSet(const wchar_t* path);
// Registers an application: stores the version under <base>\<app> as "CurVer" where it differs,
// creates the application key in the user's hive, and adds `app` to the application list.
bool regInit(const wchar_t* app);
// `key` becomes <base>\<app>\<curVer>; false, with `key` untouched, for a null `app`.
bool regAppKey(CZorString& key, const wchar_t* app);
// Adds `app` in upper case at the front of the application list unless it is there already.
void appKeyAdd(CZorString app);
// Copies the application list, the most recently added first.
void appKeys(CZorArrayTempl<CZorString>& list);

// --- Keyed layer ------------------------------------------------------------------------------
//
// All return false at once for a null or empty `app` or while the version is null. On false an
// out-value is unchanged.

bool regRead(const wchar_t* app, const wchar_t* name, unsigned long& value);
bool regRead(const wchar_t* app, const wchar_t* name, CZorString& value);
bool regRead(const wchar_t* app, const wchar_t* name, CZorArrayTempl<CZorString>& value);
bool regWrite(const wchar_t* app, const wchar_t* name, unsigned long value);
bool regWrite(const wchar_t* app, const wchar_t* name, const wchar_t* value, bool fold);
bool regWrite(const wchar_t* app, const wchar_t* name, const CZorArrayTempl<CZorString>& value);
// True if the value existed in the user's hive and was deleted.
bool regDelValue(const wchar_t* app, const wchar_t* name);

// --- Handle layer -----------------------------------------------------------------------------

// The value's bytes, at most 4 of them, go into `value`; no type test is made at this level.
bool regRead(HKEY key, const wchar_t* name, unsigned long& value);
// REG_SZ as stored; REG_EXPAND_SZ with each `;`-separated path expanded; any other type is false.
bool regRead(HKEY key, const wchar_t* name, CZorString& value);
// The strings of a REG_MULTI_SZ block up to the first empty one.
bool regRead(HKEY key, const wchar_t* name, CZorArrayTempl<CZorString>& value);
bool regWrite(HKEY key, const wchar_t* name, unsigned long value);
// A null `value` deletes the value. With `fold`, paths under an environment folder are stored as
// references and the value as REG_EXPAND_SZ; otherwise as REG_SZ.
bool regWrite(HKEY key, const wchar_t* name, const wchar_t* value, bool fold);
// An empty list deletes the value.
bool regWrite(HKEY key, const wchar_t* name, const CZorArrayTempl<CZorString>& value);
// Copies the values and subkeys of `source` into `target`. Without `overwrite` values that the
// target has are kept; below the top level they are always kept. Always true.
bool regCopyTree(HKEY target, HKEY source, bool overwrite);

namespace detail {
// The module-wide settings state. Defined with the module's other constants, in their order of
// construction.
extern CZorString settingsCurVer;
extern CZorString settingsBasePath;
extern CZorArrayTempl<CZorString> settingsAppKeys;

// Empties the application list and makes base path and version null; runs at process exit.
void settingsCleanup();
}  // namespace detail

}  // namespace ZOR
