// The settings store: hives of keys and typed values, each hive an SQLite database.
//
// This is the platform layer under the settings functions of settings.h. Keys are paths with `\`
// as the separator, matched without regard to case; each key holds named values with a type and
// raw bytes. Every write is one transaction that is on disk when the call returns, and the
// databases run in WAL mode with a busy timeout, so that several processes can share a hive.
//
// Where the hives live:
//   current user   $XDG_CONFIG_HOME/zor/user.db (default ~/.config/zor/user.db)
//   local machine  /etc/zor/machine.db (read by the settings functions as a fallback only)
//   classes root   /etc/zor/classes.db
// A non-empty ZOR_REGISTRY_DIR puts all three into that folder. A hive file that doesn't exist
// is created by the first call that creates a key in it; reads of a missing hive find nothing.
//
// Text values hold wide units (wchar_t) with their terminators; sizes always count bytes.
#pragma once

#include <string>

namespace ZOR {
class RegKey;  // An open key: the hive, the key's path and the database connection.
}

using HKEY = ZOR::RegKey*;

namespace ZOR {

namespace detail {
extern RegKey classesRootKey;
extern RegKey currentUserKey;
extern RegKey localMachineKey;
}  // namespace detail

}  // namespace ZOR

// The three hives' root keys. They are always open and never closed.
inline constexpr HKEY HKEY_CLASSES_ROOT = &ZOR::detail::classesRootKey;
inline constexpr HKEY HKEY_CURRENT_USER = &ZOR::detail::currentUserKey;
inline constexpr HKEY HKEY_LOCAL_MACHINE = &ZOR::detail::localMachineKey;

namespace ZOR {

// Value types.
inline constexpr unsigned long REG_NONE = 0;
inline constexpr unsigned long REG_SZ = 1;
inline constexpr unsigned long REG_EXPAND_SZ = 2;
inline constexpr unsigned long REG_BINARY = 3;
inline constexpr unsigned long REG_DWORD = 4;
inline constexpr unsigned long REG_MULTI_SZ = 7;

// Access masks: reading, and reading with changing.
inline constexpr unsigned long KEY_READ = 0x20019;
inline constexpr unsigned long KEY_CHANGE = 0x2001F;

// Result codes of the store's operations; 0 is success.
inline constexpr long ERROR_SUCCESS = 0;
inline constexpr long ERROR_FILE_NOT_FOUND = 2;  // No such key, value or hive.
inline constexpr long ERROR_ACCESS_DENIED = 5;   // A change through a key opened for reading.
inline constexpr long ERROR_INVALID_HANDLE = 6;
inline constexpr long ERROR_INVALID_PARAMETER = 87;
inline constexpr long ERROR_MORE_DATA = 234;  // The buffer is too small; the size says more.
inline constexpr long ERROR_NO_MORE_ITEMS = 259;
inline constexpr long ERROR_STORE_FAILURE = 1009;  // The database refused the operation.

// Opens the existing key `subKey` below `parent` (null or empty: `parent` itself again) with the
// given access; `*result` receives a handle to close with regCloseKey.
long regOpenKey(HKEY parent, const wchar_t* subKey, unsigned long access, HKEY* result);

// Opens `subKey` below `parent` for changing, creating it and every missing key on its path
// (and the hive's file and folder) in one transaction.
long regCreateKey(HKEY parent, const wchar_t* subKey, HKEY* result);

// Closes a handle from regOpenKey or regCreateKey; the root keys ignore it.
long regCloseKey(HKEY key);

// Reads a value (null or empty name: the key's default value). With null `data` only `*type` and
// `*size` are delivered; a buffer smaller than the value gives ERROR_MORE_DATA with the needed
// size in `*size`. `type` and `size` may be null where the caller needs neither.
long regQueryValue(HKEY key, const wchar_t* name, unsigned long* type, unsigned char* data,
                   unsigned long* size);

// Stores a value with its type and bytes; needs a key opened for changing.
long regSetValue(HKEY key, const wchar_t* name, unsigned long type, const unsigned char* data,
                 unsigned long size);

// Deletes a value; ERROR_FILE_NOT_FOUND if there was none.
long regDeleteValue(HKEY key, const wchar_t* name);

// The value at `index`, in the order the values were first stored. `*nameSize` is the name
// buffer's size in units on the way in and the name's length on the way out; `data` and
// `dataSize` are as in regQueryValue, and may be null. ERROR_NO_MORE_ITEMS past the end,
// ERROR_MORE_DATA when the name or the data doesn't fit.
long regEnumValue(HKEY key, unsigned long index, wchar_t* name, unsigned long* nameSize,
                  unsigned long* type, unsigned char* data, unsigned long* dataSize);

// The name of the subkey at `index`, in name order, into a buffer of `nameSize` units.
long regEnumKey(HKEY key, unsigned long index, wchar_t* name, unsigned long nameSize);

namespace detail {
// The database file of the hive that `root` (one of the three root keys) stands for.
std::string hiveFile(HKEY root);
}  // namespace detail

}  // namespace ZOR
