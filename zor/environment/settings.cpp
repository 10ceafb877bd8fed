#include "zor/environment/settings.h"

#include <cstring>
#include <cwchar>
#include <vector>

#include "zor/environment/path_unexpand.h"
#include "zor/text/text_lists.h"

namespace ZOR {
namespace {

// The platform's limit of a folded path, in units with the terminator.
constexpr unsigned int kPathUnits = 260;
// regCopyTree's buffers: a value whose name or data doesn't fit ends the enumeration.
constexpr unsigned long kCopyNameUnits = 260;
constexpr unsigned long kCopyDataBytes = 1024;
// The first size a text query offers, in bytes.
constexpr unsigned long kFirstQueryBytes = 128;

// Closes a key on every path out of a scope.
class KeyCloser {
  public:
    explicit KeyCloser(HKEY key) : key_(key) {}
    ~KeyCloser() {
        if (key_ != nullptr) regCloseKey(key_);
    }
    KeyCloser(const KeyCloser&) = delete;
    KeyCloser& operator=(const KeyCloser&) = delete;

  private:
    HKEY key_;
};

// Each path of a path list expanded by itself; a list without parts comes back unchanged.
CZorString expandList(const wchar_t* text) {
    CZorArrayTempl<CZorString> parts;
    if (!strTok(parts, text, L";", false)) return CZorString(text);
    for (std::uint32_t i = 0; i < parts.len(); ++i)
        parts[static_cast<int>(i)].expandEnvironmentStrings();
    return implode(parts, L";");
}

// Each path of a path list folded into an environment reference where one applies. True if any
// part changed.
bool foldList(const wchar_t* text, CZorString& folded) {
    CZorArrayTempl<CZorString> parts;
    if (!strTok(parts, text, L";", false)) {
        folded = text;
        return false;
    }
    bool changed = false;
    wchar_t buffer[kPathUnits];
    for (std::uint32_t i = 0; i < parts.len(); ++i) {
        CZorString& part = parts[static_cast<int>(i)];
        if (PathUnExpandEnvStringsW(part, buffer, kPathUnits)) {
            part = buffer;
            changed = true;
        }
    }
    folded = implode(parts, L";");
    return changed;
}

const unsigned char* bytesOf(const wchar_t* text) {
    return reinterpret_cast<const unsigned char*>(text);
}

// Queries a value into a buffer that grows to the size the store asks for. On success the buffer
// holds the bytes followed by at least one wide terminator.
bool queryGrowing(HKEY key, const wchar_t* name, unsigned long& type, std::vector<wchar_t>& units) {
    unsigned long size = kFirstQueryBytes;
    for (;;) {
        units.assign(size / sizeof(wchar_t) + 2, 0);
        unsigned long got = size;
        const long rc =
            regQueryValue(key, name, &type, reinterpret_cast<unsigned char*>(units.data()), &got);
        if (rc == ERROR_SUCCESS) return true;
        if (rc != ERROR_MORE_DATA) return false;
        size = got;
    }
}

// The key path of a keyed call and the value name behind the last `\` of `name`.
struct KeyedName {
    CZorString key;
    CZorString value;
};

bool keyedName(const wchar_t* app, const wchar_t* name, KeyedName& out) {
    if (app == nullptr || app[0] == 0 || detail::settingsCurVer.isNull()) return false;
    regAppKey(out.key, app);
    out.value = name;
    if (name != nullptr) {
        if (const wchar_t* slash = std::wcsrchr(name, L'\\'); slash != nullptr) {
            out.key += L'\\';
            out.key += out.value.left(static_cast<unsigned int>(slash - name));
            out.value = slash + 1;
        }
    }
    return true;
}

// Reads through `read` from the user's hive, then the machine's.
template <class Read>
bool readEitherHive(const KeyedName& where, Read read) {
    for (HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) {
        HKEY key = nullptr;
        if (regOpenKey(root, where.key, KEY_READ, &key) != ERROR_SUCCESS) continue;
        KeyCloser closer(key);
        if (read(key)) return true;
    }
    return false;
}

template <class Write>
bool writeUserHive(const KeyedName& where, Write write) {
    HKEY key = nullptr;
    if (regCreateKey(HKEY_CURRENT_USER, where.key, &key) != ERROR_SUCCESS) return false;
    KeyCloser closer(key);
    return write(key);
}

}  // namespace

// --- Set-up ------------------------------------------------------------------------------------

void curVerSet(const wchar_t* version) {
    detail::settingsCurVer = version;
}

const wchar_t* regBasePathSet(const wchar_t* path) {
    if (path != nullptr) detail::settingsBasePath = path;
    return detail::settingsBasePath;
}

bool regAppKey(CZorString& key, const wchar_t* app) {
    if (app == nullptr) return false;
    CZorString built = detail::settingsBasePath;
    built += L"\\";
    built += app;
    built += L"\\";
    built += detail::settingsCurVer;
    key = built;
    return true;
}

bool regInit(const wchar_t* app) {
    if (app == nullptr || app[0] == 0) return false;
    CZorString appPath = detail::settingsBasePath;
    appPath += L"\\";
    appPath += app;
    HKEY key = nullptr;
    if (regCreateKey(HKEY_CURRENT_USER, appPath, &key) != ERROR_SUCCESS) return false;
    {
        KeyCloser closer(key);
        CZorString registered;
        if (!regRead(key, L"CurVer", registered) || !(registered == detail::settingsCurVer))
            regWrite(key, L"CurVer", detail::settingsCurVer, false);
    }
    CZorString appKey;
    regAppKey(appKey, app);
    if (regCreateKey(HKEY_CURRENT_USER, appKey, &key) != ERROR_SUCCESS) return false;
    regCloseKey(key);
    appKeyAdd(app);
    return true;
}

void appKeyAdd(CZorString app) {
    if (app.isNull()) return;
    app.makeUpper();
    if (detail::settingsAppKeys.contains(app)) return;
    detail::settingsAppKeys.insertAt(0, app);
}

void appKeys(CZorArrayTempl<CZorString>& list) {
    list = detail::settingsAppKeys;
}

void detail::settingsCleanup() {
    settingsAppKeys.removeAll();
    settingsBasePath = static_cast<const wchar_t*>(nullptr);
    settingsCurVer = static_cast<const wchar_t*>(nullptr);
}

// --- Keyed layer ------------------------------------------------------------------------------

bool regRead(const wchar_t* app, const wchar_t* name, unsigned long& value) {
    KeyedName where;
    if (!keyedName(app, name, where)) return false;
    return readEitherHive(where, [&](HKEY key) {
        // Exactly 4 bytes: a wider value doesn't fit and a narrower one isn't a number.
        std::uint32_t number = 0;
        unsigned long type = REG_NONE;
        unsigned long size = sizeof number;
        if (regQueryValue(key, where.value, &type, reinterpret_cast<unsigned char*>(&number),
                          &size) != ERROR_SUCCESS ||
            type != REG_DWORD || size != sizeof number)
            return false;
        value = number;
        return true;
    });
}

bool regRead(const wchar_t* app, const wchar_t* name, CZorString& value) {
    KeyedName where;
    if (!keyedName(app, name, where)) return false;
    return readEitherHive(where, [&](HKEY key) { return regRead(key, where.value, value); });
}

bool regRead(const wchar_t* app, const wchar_t* name, CZorArrayTempl<CZorString>& value) {
    KeyedName where;
    if (!keyedName(app, name, where)) return false;
    return readEitherHive(where, [&](HKEY key) { return regRead(key, where.value, value); });
}

bool regWrite(const wchar_t* app, const wchar_t* name, unsigned long value) {
    KeyedName where;
    if (!keyedName(app, name, where)) return false;
    return writeUserHive(where, [&](HKEY key) { return regWrite(key, where.value, value); });
}

bool regWrite(const wchar_t* app, const wchar_t* name, const wchar_t* value, bool fold) {
    KeyedName where;
    if (!keyedName(app, name, where)) return false;
    return writeUserHive(where, [&](HKEY key) { return regWrite(key, where.value, value, fold); });
}

bool regWrite(const wchar_t* app, const wchar_t* name, const CZorArrayTempl<CZorString>& value) {
    KeyedName where;
    if (!keyedName(app, name, where)) return false;
    return writeUserHive(where, [&](HKEY key) { return regWrite(key, where.value, value); });
}

bool regDelValue(const wchar_t* app, const wchar_t* name) {
    KeyedName where;
    if (!keyedName(app, name, where)) return false;
    HKEY key = nullptr;
    if (regOpenKey(HKEY_CURRENT_USER, where.key, KEY_CHANGE, &key) != ERROR_SUCCESS) return false;
    KeyCloser closer(key);
    return regDeleteValue(key, where.value) == ERROR_SUCCESS;
}

// --- Handle layer -----------------------------------------------------------------------------

bool regRead(HKEY key, const wchar_t* name, unsigned long& value) {
    unsigned char bytes[kFirstQueryBytes];
    unsigned long size = sizeof bytes;
    if (regQueryValue(key, name, nullptr, bytes, &size) != ERROR_SUCCESS) return false;
    // Only the out-value's own 4 bytes are written, whatever the stored width.
    std::uint32_t number = static_cast<std::uint32_t>(value);
    std::memcpy(&number, bytes, size < sizeof number ? size : sizeof number);
    value = number;
    return true;
}

bool regRead(HKEY key, const wchar_t* name, CZorString& value) {
    unsigned long type = REG_NONE;
    std::vector<wchar_t> units;
    if (!queryGrowing(key, name, type, units)) return false;
    if (type == REG_SZ) {
        value = units.data();
        return true;
    }
    if (type == REG_EXPAND_SZ) {
        value = expandList(units.data());
        return true;
    }
    return false;
}

bool regRead(HKEY key, const wchar_t* name, CZorArrayTempl<CZorString>& value) {
    unsigned long type = REG_NONE;
    std::vector<wchar_t> units;
    if (!queryGrowing(key, name, type, units) || type != REG_MULTI_SZ) return false;
    value.removeAll();
    // The buffer ends in at least two terminators, so the walk stops inside it.
    for (const wchar_t* p = units.data(); *p != 0; p += std::wcslen(p) + 1)
        value.append(CZorString(p));
    return true;
}

bool regWrite(HKEY key, const wchar_t* name, unsigned long value) {
    const std::uint32_t number = static_cast<std::uint32_t>(value);
    return regSetValue(key, name, REG_DWORD, reinterpret_cast<const unsigned char*>(&number),
                       sizeof number) == ERROR_SUCCESS;
}

bool regWrite(HKEY key, const wchar_t* name, const wchar_t* value, bool fold) {
    if (value == nullptr) return regDeleteValue(key, name) == ERROR_SUCCESS;
    CZorString folded;
    const bool expand = fold && foldList(value, folded);
    const wchar_t* text = expand ? static_cast<const wchar_t*>(folded) : value;
    const unsigned long bytes =
        static_cast<unsigned long>((std::wcslen(text) + 1) * sizeof(wchar_t));
    return regSetValue(key, name, expand ? REG_EXPAND_SZ : REG_SZ, bytesOf(text), bytes) ==
           ERROR_SUCCESS;
}

bool regWrite(HKEY key, const wchar_t* name, const CZorArrayTempl<CZorString>& value) {
    if (value.isEmpty()) return regDeleteValue(key, name) == ERROR_SUCCESS;
    std::vector<wchar_t> block;
    for (std::uint32_t i = 0; i < value.len(); ++i) {
        const wchar_t* text = value[static_cast<int>(i)];
        if (text != nullptr) block.insert(block.end(), text, text + std::wcslen(text));
        block.push_back(0);
    }
    block.push_back(0);
    return regSetValue(key, name, REG_MULTI_SZ, bytesOf(block.data()),
                       static_cast<unsigned long>(block.size() * sizeof(wchar_t))) == ERROR_SUCCESS;
}

bool regCopyTree(HKEY target, HKEY source, bool overwrite) {
    wchar_t name[kCopyNameUnits];
    unsigned char data[kCopyDataBytes];
    for (unsigned long i = 0;; ++i) {
        unsigned long nameUnits = kCopyNameUnits;
        unsigned long dataBytes = kCopyDataBytes;
        unsigned long type = REG_NONE;
        if (regEnumValue(source, i, name, &nameUnits, &type, data, &dataBytes) != ERROR_SUCCESS)
            break;
        if (!overwrite && regQueryValue(target, name, nullptr, nullptr, nullptr) == ERROR_SUCCESS)
            continue;
        regSetValue(target, name, type, data, dataBytes);
    }
    for (unsigned long i = 0; regEnumKey(source, i, name, kCopyNameUnits) == ERROR_SUCCESS; ++i) {
        HKEY from = nullptr;
        if (regOpenKey(source, name, KEY_READ, &from) != ERROR_SUCCESS) continue;
        KeyCloser closeFrom(from);
        HKEY to = nullptr;
        if (regCreateKey(target, name, &to) != ERROR_SUCCESS) continue;
        KeyCloser closeTo(to);
        regCopyTree(to, from, false);
    }
    return true;
}

}  // namespace ZOR
