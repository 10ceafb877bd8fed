#include "zor/environment/registry_store.h"

#include <sqlite3.h>
#include <sys/stat.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <thread>
#include <vector>

#include "zor/environment/native_text.h"

namespace ZOR {

enum class Hive { classesRoot, currentUser, localMachine };

class RegKey {
  public:
    explicit RegKey(Hive h) : hive(h) {}

    Hive hive;
    std::string path;       // UTF-8, components joined by `\`, empty for the hive's root.
    sqlite3* db = nullptr;  // Null for the three root keys, which have no connection.
    bool writable = false;
};

namespace detail {
RegKey classesRootKey(Hive::classesRoot);
RegKey currentUserKey(Hive::currentUser);
RegKey localMachineKey(Hive::localMachine);
}  // namespace detail

namespace {

// Long enough to ride out another process's write burst, short enough that a stuck writer shows.
constexpr int kBusyTimeoutMs = 10000;

// Limits of what the store takes: a value's bytes, a value name's and a key name's units.
constexpr unsigned long kMaxValueBytes = 1ul << 20;
constexpr std::size_t kMaxValueNameUnits = 16383;
constexpr std::size_t kMaxKeyNameUnits = 255;

constexpr const char* kSchema =
    "CREATE TABLE IF NOT EXISTS reg_keys("
    "  path TEXT PRIMARY KEY COLLATE NOCASE,"
    "  parent TEXT NOT NULL COLLATE NOCASE,"
    "  name TEXT NOT NULL COLLATE NOCASE);"
    "CREATE INDEX IF NOT EXISTS reg_keys_by_parent ON reg_keys(parent, name);"
    "CREATE TABLE IF NOT EXISTS reg_values("
    "  path TEXT NOT NULL COLLATE NOCASE,"
    "  name TEXT NOT NULL COLLATE NOCASE,"
    "  type INTEGER NOT NULL,"
    "  data BLOB NOT NULL,"
    "  PRIMARY KEY(path, name));";

bool isRoot(HKEY key) {
    return key == HKEY_CLASSES_ROOT || key == HKEY_CURRENT_USER || key == HKEY_LOCAL_MACHINE;
}

// The folder of a hive, without a trailing slash.
std::string hiveFolder(Hive hive) {
    if (const char* dir = std::getenv("ZOR_REGISTRY_DIR"); dir != nullptr && *dir != 0) return dir;
    if (hive != Hive::currentUser) return "/etc/zor";
    if (const char* config = std::getenv("XDG_CONFIG_HOME"); config != nullptr && *config != 0)
        return std::string(config) + "/zor";
    const char* home = std::getenv("HOME");
    return std::string(home != nullptr ? home : "") + "/.config/zor";
}

const char* hiveFileName(Hive hive) {
    switch (hive) {
        case Hive::classesRoot:
            return "classes.db";
        case Hive::currentUser:
            return "user.db";
        case Hive::localMachine:
            return "machine.db";
    }
    return "user.db";
}

void makeFolders(const std::string& folder) {
    for (std::size_t slash = folder.find('/', 1);; slash = folder.find('/', slash + 1)) {
        const std::string part = folder.substr(0, slash);
        if (::mkdir(part.c_str(), 0755) != 0 && errno != EEXIST) return;
        if (slash == std::string::npos) return;
    }
}

// Runs `sql` until it is through, retrying while another connection holds the lock beyond the
// busy handler's patience (a journal mode change doesn't wait by itself).
bool execute(sqlite3* db, const char* sql) {
    const auto deadline =
        std::chrono::steady_clock::now() + std::chrono::milliseconds(kBusyTimeoutMs);
    for (;;) {
        const int rc = sqlite3_exec(db, sql, nullptr, nullptr, nullptr);
        if (rc == SQLITE_OK) return true;
        if ((rc & 0xFF) != SQLITE_BUSY && (rc & 0xFF) != SQLITE_LOCKED) return false;
        if (std::chrono::steady_clock::now() > deadline) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
}

// A connection to a hive's database. Reading never creates the file; changing opens it for
// writing and creating also makes the file and its folder, in WAL mode with the schema.
sqlite3* openHive(Hive hive, bool writable, bool create) {
    const std::string folder = hiveFolder(hive);
    const std::string file = folder + "/" + hiveFileName(hive);
    if (create) makeFolders(folder);
    sqlite3* db = nullptr;
    int flags = writable ? SQLITE_OPEN_READWRITE : SQLITE_OPEN_READONLY;
    if (create) flags |= SQLITE_OPEN_CREATE;
    int rc = sqlite3_open_v2(file.c_str(), &db, flags, nullptr);
    if (rc != SQLITE_OK && !writable) {
        // A reader may lack the right to write the shared-memory index beside a hive it can read;
        // read-write without creating is the fallback that WAL readers prefer anyway.
        sqlite3_close(db);
        db = nullptr;
        rc = sqlite3_open_v2(file.c_str(), &db, SQLITE_OPEN_READWRITE, nullptr);
    }
    if (rc != SQLITE_OK) {
        sqlite3_close(db);
        return nullptr;
    }
    sqlite3_busy_timeout(db, kBusyTimeoutMs);
    if (writable) {
        // FULL makes every commit reach the disk before the call returns.
        if (!execute(db, "PRAGMA journal_mode=WAL;") || !execute(db, "PRAGMA synchronous=FULL;") ||
            !execute(db, kSchema)) {
            sqlite3_close(db);
            return nullptr;
        }
    }
    return db;
}

class Statement {
  public:
    Statement(sqlite3* db, const char* sql) {
        if (sqlite3_prepare_v2(db, sql, -1, &stmt_, nullptr) != SQLITE_OK) stmt_ = nullptr;
    }
    ~Statement() { sqlite3_finalize(stmt_); }
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    bool ok() const { return stmt_ != nullptr; }
    Statement& reset() {
        sqlite3_reset(stmt_);
        return *this;
    }
    Statement& bind(int index, const std::string& text) {
        sqlite3_bind_text(stmt_, index, text.c_str(), static_cast<int>(text.size()),
                          SQLITE_TRANSIENT);
        return *this;
    }
    Statement& bind(int index, long long number) {
        sqlite3_bind_int64(stmt_, index, number);
        return *this;
    }
    Statement& bindBlob(int index, const unsigned char* data, unsigned long size) {
        // A zero-length blob must still be a blob, not NULL, for the NOT NULL column.
        static const unsigned char empty = 0;
        sqlite3_bind_blob(stmt_, index, size != 0 ? data : &empty, static_cast<int>(size),
                          SQLITE_TRANSIENT);
        return *this;
    }
    // SQLITE_ROW, SQLITE_DONE or an error.
    int step() { return sqlite3_step(stmt_); }
    std::string text(int column) const {
        const auto* p = reinterpret_cast<const char*>(sqlite3_column_text(stmt_, column));
        return p != nullptr ? p : "";
    }
    long long number(int column) const { return sqlite3_column_int64(stmt_, column); }
    std::vector<unsigned char> blob(int column) const {
        const auto* p = static_cast<const unsigned char*>(sqlite3_column_blob(stmt_, column));
        const int n = sqlite3_column_bytes(stmt_, column);
        return p != nullptr ? std::vector<unsigned char>(p, p + n) : std::vector<unsigned char>{};
    }

  private:
    sqlite3_stmt* stmt_ = nullptr;
};

// Every change is one immediate transaction: it takes the write lock up front (waiting through the
// busy handler), so it never has to upgrade a stale read snapshot. `body` runs inside.
template <class Body>
long inTransaction(sqlite3* db, Body body) {
    if (!execute(db, "BEGIN IMMEDIATE;")) return ERROR_STORE_FAILURE;
    const long rc = body();
    if (rc != ERROR_SUCCESS) {
        sqlite3_exec(db, "ROLLBACK;", nullptr, nullptr, nullptr);
        return rc;
    }
    if (!execute(db, "COMMIT;")) {
        sqlite3_exec(db, "ROLLBACK;", nullptr, nullptr, nullptr);
        return ERROR_STORE_FAILURE;
    }
    return ERROR_SUCCESS;
}

// Splits a key path at `\` and drops empty parts, so "a\\b\" and "a\b" name the same key.
std::vector<std::string> pathParts(const wchar_t* subKey) {
    std::vector<std::string> parts;
    const std::string text = detail::toUtf8(subKey);
    std::size_t begin = 0;
    while (begin <= text.size()) {
        std::size_t end = text.find('\\', begin);
        if (end == std::string::npos) end = text.size();
        if (end > begin) parts.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return parts;
}

std::string joinPath(const std::string& base, const std::string& part) {
    return base.empty() ? part : base + "\\" + part;
}

bool keyExists(sqlite3* db, const std::string& path) {
    if (path.empty()) return true;
    Statement s(db, "SELECT 1 FROM reg_keys WHERE path = ?1;");
    return s.ok() && s.bind(1, path).step() == SQLITE_ROW;
}

std::string valueName(const wchar_t* name) {
    return detail::toUtf8(name);
}

// Copies `bytes` out by the buffer rules shared by regQueryValue and regEnumValue.
long deliver(const std::vector<unsigned char>& bytes, unsigned char* data, unsigned long* size) {
    const unsigned long needed = static_cast<unsigned long>(bytes.size());
    if (data != nullptr) {
        if (size == nullptr) return ERROR_INVALID_PARAMETER;
        if (*size < needed) {
            *size = needed;
            return ERROR_MORE_DATA;
        }
        if (needed != 0) std::memcpy(data, bytes.data(), needed);
    }
    if (size != nullptr) *size = needed;
    return ERROR_SUCCESS;
}

long openKey(HKEY parent, const wchar_t* subKey, bool writable, bool create, HKEY* result) {
    if (parent == nullptr || result == nullptr) return ERROR_INVALID_PARAMETER;
    std::string path = parent->path;
    for (const std::string& part : pathParts(subKey)) {
        if (detail::fromUtf8(part).size() > kMaxKeyNameUnits) return ERROR_INVALID_PARAMETER;
        path = joinPath(path, part);
    }
    sqlite3* db = openHive(parent->hive, writable, create);
    if (db == nullptr) return ERROR_FILE_NOT_FOUND;
    long rc = ERROR_SUCCESS;
    if (create) {
        rc = inTransaction(db, [&] {
            Statement insert(
                db, "INSERT OR IGNORE INTO reg_keys(path, parent, name) VALUES(?1, ?2, ?3);");
            if (!insert.ok()) return ERROR_STORE_FAILURE;
            std::string sofar;
            for (const std::string& part : pathParts(detail::fromUtf8(path).c_str())) {
                const std::string next = joinPath(sofar, part);
                if (insert.reset().bind(1, next).bind(2, sofar).bind(3, part).step() != SQLITE_DONE)
                    return ERROR_STORE_FAILURE;
                sofar = next;
            }
            return ERROR_SUCCESS;
        });
    } else if (!keyExists(db, path)) {
        rc = ERROR_FILE_NOT_FOUND;
    }
    if (rc != ERROR_SUCCESS) {
        sqlite3_close(db);
        return rc;
    }
    auto* key = new RegKey(parent->hive);
    key->path = std::move(path);
    key->db = db;
    key->writable = writable;
    *result = key;
    return ERROR_SUCCESS;
}

// The three root keys have no connection of their own; values live in opened keys only.
bool usable(HKEY key) {
    return key != nullptr && !isRoot(key) && key->db != nullptr;
}

}  // namespace

long regOpenKey(HKEY parent, const wchar_t* subKey, unsigned long access, HKEY* result) {
    return openKey(parent, subKey, (access & ~KEY_READ) != 0, false, result);
}

long regCreateKey(HKEY parent, const wchar_t* subKey, HKEY* result) {
    return openKey(parent, subKey, true, true, result);
}

long regCloseKey(HKEY key) {
    if (key == nullptr) return ERROR_INVALID_HANDLE;
    if (isRoot(key)) return ERROR_SUCCESS;
    sqlite3_close(key->db);
    delete key;
    return ERROR_SUCCESS;
}

long regQueryValue(HKEY key, const wchar_t* name, unsigned long* type, unsigned char* data,
                   unsigned long* size) {
    if (!usable(key)) return ERROR_INVALID_HANDLE;
    Statement s(key->db, "SELECT type, data FROM reg_values WHERE path = ?1 AND name = ?2;");
    if (!s.ok() || s.bind(1, key->path).bind(2, valueName(name)).step() != SQLITE_ROW)
        return ERROR_FILE_NOT_FOUND;
    if (type != nullptr) *type = static_cast<unsigned long>(s.number(0));
    return deliver(s.blob(1), data, size);
}

long regSetValue(HKEY key, const wchar_t* name, unsigned long type, const unsigned char* data,
                 unsigned long size) {
    if (!usable(key)) return ERROR_INVALID_HANDLE;
    if (!key->writable) return ERROR_ACCESS_DENIED;
    if ((data == nullptr && size != 0) || size > kMaxValueBytes) return ERROR_INVALID_PARAMETER;
    if (name != nullptr && std::wcslen(name) > kMaxValueNameUnits) return ERROR_INVALID_PARAMETER;
    return inTransaction(key->db, [&] {
        // The key may have been created by this handle's own open; make sure it is still there,
        // so that values never hang below a key that enumeration can't reach.
        if (!keyExists(key->db, key->path)) return ERROR_FILE_NOT_FOUND;
        Statement s(
            key->db,
            "INSERT INTO reg_values(path, name, type, data) VALUES(?1, ?2, ?3, ?4) "
            "ON CONFLICT(path, name) DO UPDATE SET type = excluded.type, data = excluded.data;");
        if (!s.ok()) return ERROR_STORE_FAILURE;
        s.bind(1, key->path).bind(2, valueName(name)).bind(3, static_cast<long long>(type));
        s.bindBlob(4, data, size);
        return s.step() == SQLITE_DONE ? ERROR_SUCCESS : ERROR_STORE_FAILURE;
    });
}

long regDeleteValue(HKEY key, const wchar_t* name) {
    if (!usable(key)) return ERROR_INVALID_HANDLE;
    if (!key->writable) return ERROR_ACCESS_DENIED;
    return inTransaction(key->db, [&] {
        Statement s(key->db, "DELETE FROM reg_values WHERE path = ?1 AND name = ?2;");
        if (!s.ok() || s.bind(1, key->path).bind(2, valueName(name)).step() != SQLITE_DONE)
            return ERROR_STORE_FAILURE;
        return sqlite3_changes(key->db) > 0 ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND;
    });
}

long regEnumValue(HKEY key, unsigned long index, wchar_t* name, unsigned long* nameSize,
                  unsigned long* type, unsigned char* data, unsigned long* dataSize) {
    if (!usable(key)) return ERROR_INVALID_HANDLE;
    if (name == nullptr || nameSize == nullptr) return ERROR_INVALID_PARAMETER;
    Statement s(key->db,
                "SELECT name, type, data FROM reg_values WHERE path = ?1 ORDER BY rowid "
                "LIMIT 1 OFFSET ?2;");
    if (!s.ok() || s.bind(1, key->path).bind(2, static_cast<long long>(index)).step() != SQLITE_ROW)
        return ERROR_NO_MORE_ITEMS;
    const std::wstring found = detail::fromUtf8(s.text(0));
    if (found.size() + 1 > *nameSize) return ERROR_MORE_DATA;
    std::wmemcpy(name, found.c_str(), found.size() + 1);
    *nameSize = static_cast<unsigned long>(found.size());
    if (type != nullptr) *type = static_cast<unsigned long>(s.number(1));
    return deliver(s.blob(2), data, dataSize);
}

long regEnumKey(HKEY key, unsigned long index, wchar_t* name, unsigned long nameSize) {
    if (!usable(key)) return ERROR_INVALID_HANDLE;
    if (name == nullptr) return ERROR_INVALID_PARAMETER;
    Statement s(key->db,
                "SELECT name FROM reg_keys WHERE parent = ?1 ORDER BY name LIMIT 1 OFFSET ?2;");
    if (!s.ok() || s.bind(1, key->path).bind(2, static_cast<long long>(index)).step() != SQLITE_ROW)
        return ERROR_NO_MORE_ITEMS;
    const std::wstring found = detail::fromUtf8(s.text(0));
    if (found.size() + 1 > nameSize) return ERROR_MORE_DATA;
    std::wmemcpy(name, found.c_str(), found.size() + 1);
    return ERROR_SUCCESS;
}

std::string detail::hiveFile(HKEY root) {
    const Hive hive = root != nullptr ? root->hive : Hive::currentUser;
    return hiveFolder(hive) + "/" + hiveFileName(hive);
}

}  // namespace ZOR
