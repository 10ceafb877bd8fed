// Helpers of the environment tests: a temporary folder, a scoped environment variable, files as
// text, and fixtures that point the settings store at a fresh folder and restore the settings
// state.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>

#include "zor/environment/settings.h"
#include "zor/text/utf8.h"

namespace ZOR::testing {

class TempDir {
  public:
    TempDir() {
        char pattern[] = "/tmp/zor_env_test_XXXXXX";
        path_ = ::mkdtemp(pattern) != nullptr ? pattern : "";
    }
    ~TempDir() {
        std::error_code ignored;
        if (!path_.empty()) std::filesystem::remove_all(path_, ignored);
    }
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const std::string& path() const { return path_; }

  private:
    std::string path_;
};

// Sets (or with null unsets) an environment variable for the scope and restores it after.
class ScopedEnv {
  public:
    ScopedEnv(const char* name, const char* value) : name_(name) {
        if (const char* old = std::getenv(name)) old_ = old;
        set(name, value);
    }
    ~ScopedEnv() { set(name_.c_str(), old_ ? old_->c_str() : nullptr); }
    ScopedEnv(const ScopedEnv&) = delete;
    ScopedEnv& operator=(const ScopedEnv&) = delete;

  private:
    static void set(const char* name, const char* value) {
        if (value != nullptr) {
            ::setenv(name, value, 1);
        } else {
            ::unsetenv(name);
        }
    }

    std::string name_;
    std::optional<std::string> old_;
};

inline std::wstring wide(const std::string& text) {
    return detail::fromUtf8(text);
}

// Creates or replaces the file `path` with `text`.
inline void writeFile(const std::string& path, const std::string& text = "") {
    std::ofstream(path, std::ios::binary) << text;
}

// The whole file, or "" if it can't be read.
inline std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

inline CZorArrayTempl<CZorString> listOf(std::initializer_list<const wchar_t*> texts) {
    CZorArrayTempl<CZorString> list;
    for (const wchar_t* text : texts) list.append(CZorString(text));
    return list;
}

// Reads the value `name` of the key `path` below `root` through the handle layer; false if the
// key or the value is missing. `type` receives the stored type.
template <class Value>
bool readKey(HKEY root, const wchar_t* path, const wchar_t* name, Value& value,
             unsigned long* type = nullptr) {
    HKEY key = nullptr;
    if (regOpenKey(root, path, KEY_READ, &key) != ERROR_SUCCESS) return false;
    const bool read = regRead(key, name, value);
    if (type != nullptr) regQueryValue(key, name, type, nullptr, nullptr);
    regCloseKey(key);
    return read;
}

// All hives in a fresh folder.
class RegistryTest : public ::testing::Test {
  protected:
    TempDir dir_;

  private:
    ScopedEnv registryDir_{"ZOR_REGISTRY_DIR", dir_.path().c_str()};
};

// The hives of RegistryTest, base path "Soft\Zor" and version "7.1" set, and the module's
// settings state as it was put back at the end.
class SettingsTest : public RegistryTest {
  protected:
    SettingsTest()
        : savedCurVer_(detail::settingsCurVer),
          savedBasePath_(detail::settingsBasePath),
          savedAppKeys_(detail::settingsAppKeys) {
        regBasePathSet(L"Soft\\Zor");
        curVerSet(L"7.1");
    }
    ~SettingsTest() override {
        detail::settingsCurVer = savedCurVer_;
        detail::settingsBasePath = savedBasePath_;
        detail::settingsAppKeys = savedAppKeys_;
    }

    // The application key of "Draw".
    static constexpr const wchar_t* kDrawKey = L"Soft\\Zor\\Draw\\7.1";

    // Writes a value of "Draw" straight into the machine's hive, which the settings functions
    // never write.
    template <class Value>
    void writeMachine(const wchar_t* name, const Value& value) {
        HKEY key = nullptr;
        ASSERT_EQ(regCreateKey(HKEY_LOCAL_MACHINE, kDrawKey, &key), ERROR_SUCCESS);
        EXPECT_TRUE(regWrite(key, name, value));
        regCloseKey(key);
    }

  private:
    CZorString savedCurVer_;
    CZorString savedBasePath_;
    CZorArrayTempl<CZorString> savedAppKeys_;
};

}  // namespace ZOR::testing
