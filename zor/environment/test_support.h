// Helpers of the environment tests: a temporary folder, a scoped environment variable, and a
// fixture that points the settings store at a fresh folder and restores the settings state.
#pragma once

#include <ftw.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>

#include "zor/environment/settings.h"

namespace ZOR::testing {

class TempDir {
  public:
    TempDir() {
        char pattern[] = "/tmp/zor_env_test_XXXXXX";
        const char* made = ::mkdtemp(pattern);
        path_ = made != nullptr ? made : "";
    }
    ~TempDir() {
        if (path_.empty()) return;
        ::nftw(
            path_.c_str(),
            [](const char* p, const struct stat*, int, struct FTW*) { return std::remove(p); }, 16,
            FTW_DEPTH | FTW_PHYS);
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
        if (value != nullptr) {
            ::setenv(name, value, 1);
        } else {
            ::unsetenv(name);
        }
    }
    ~ScopedEnv() {
        if (old_) {
            ::setenv(name_.c_str(), old_->c_str(), 1);
        } else {
            ::unsetenv(name_.c_str());
        }
    }
    ScopedEnv(const ScopedEnv&) = delete;
    ScopedEnv& operator=(const ScopedEnv&) = delete;

  private:
    std::string name_;
    std::optional<std::string> old_;
};

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

// All hives in a fresh folder; base path "Soft\Zor" and version "7.1" set, and the module's
// settings state as it was put back at the end.
class SettingsTest : public ::testing::Test {
  protected:
    SettingsTest()
        : registryDir_("ZOR_REGISTRY_DIR", dir_.path().c_str()),
          savedCurVer_(detail::settingsCurVer),
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

    // Writes a value straight into the machine's hive, which the settings functions never write.
    template <class Value>
    void writeMachine(const wchar_t* keyPath, const wchar_t* name, const Value& value) {
        HKEY key = nullptr;
        ASSERT_EQ(regCreateKey(HKEY_LOCAL_MACHINE, keyPath, &key), ERROR_SUCCESS);
        EXPECT_TRUE(regWrite(key, name, value));
        regCloseKey(key);
    }

    TempDir dir_;

  private:
    ScopedEnv registryDir_;
    CZorString savedCurVer_;
    CZorString savedBasePath_;
    CZorArrayTempl<CZorString> savedAppKeys_;
};

}  // namespace ZOR::testing
