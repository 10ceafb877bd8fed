#include "zor/environment/registry_store.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "zor/environment/test_support.h"

namespace ZOR {
namespace {

using testing::RegistryTest;
using testing::ScopedEnv;

long setText(HKEY key, const wchar_t* name, const wchar_t* text) {
    return regSetValue(key, name, REG_SZ, reinterpret_cast<const unsigned char*>(text),
                       static_cast<unsigned long>((std::wcslen(text) + 1) * sizeof(wchar_t)));
}

TEST(RegistryStoreLocation, FolderFollowsEnvironment) {
    ScopedEnv dir("ZOR_REGISTRY_DIR", nullptr);
    ScopedEnv config("XDG_CONFIG_HOME", "/cfg");
    EXPECT_EQ(detail::hiveFile(HKEY_CURRENT_USER), "/cfg/zor/user.db");
    EXPECT_EQ(detail::hiveFile(HKEY_LOCAL_MACHINE), "/etc/zor/machine.db");
    EXPECT_EQ(detail::hiveFile(HKEY_CLASSES_ROOT), "/etc/zor/classes.db");
    {
        ScopedEnv noConfig("XDG_CONFIG_HOME", nullptr);
        ScopedEnv home("HOME", "/home/ann");
        EXPECT_EQ(detail::hiveFile(HKEY_CURRENT_USER), "/home/ann/.config/zor/user.db");
    }
    ScopedEnv all("ZOR_REGISTRY_DIR", "/r");
    EXPECT_EQ(detail::hiveFile(HKEY_LOCAL_MACHINE), "/r/machine.db");
}

TEST_F(RegistryTest, CreateMakesWholePathKeysIgnoreCaseAndSmallBuffersLearnTheSize) {
    HKEY key = nullptr;
    ASSERT_EQ(regCreateKey(HKEY_CURRENT_USER, L"Soft\\\\Zor\\App\\", &key), ERROR_SUCCESS);
    ASSERT_EQ(setText(key, L"", L"default value"), ERROR_SUCCESS);
    ASSERT_EQ(setText(key, L"Name", L"value"), ERROR_SUCCESS);
    regCloseKey(key);

    HKEY parent = nullptr;
    ASSERT_EQ(regOpenKey(HKEY_CURRENT_USER, L"SOFT\\zor", KEY_READ, &parent), ERROR_SUCCESS);
    wchar_t name[8];
    EXPECT_EQ(regEnumKey(parent, 0, name, 8), ERROR_SUCCESS);
    EXPECT_STREQ(name, L"App");
    EXPECT_EQ(regEnumKey(parent, 1, name, 8), ERROR_NO_MORE_ITEMS);
    EXPECT_EQ(regOpenKey(parent, L"missing", KEY_READ, &key), ERROR_FILE_NOT_FOUND);
    ASSERT_EQ(regOpenKey(parent, L"app", KEY_READ, &key), ERROR_SUCCESS);
    regCloseKey(parent);

    unsigned long type = 0;
    unsigned long size = 0;
    EXPECT_EQ(regQueryValue(key, L"NAME", nullptr, nullptr, &size), ERROR_SUCCESS);
    EXPECT_EQ(size, 6 * sizeof(wchar_t));
    unsigned char small[8];
    size = sizeof small;
    EXPECT_EQ(regQueryValue(key, nullptr, &type, small, &size), ERROR_MORE_DATA);
    EXPECT_EQ(type, REG_SZ);
    EXPECT_EQ(size, 14 * sizeof(wchar_t));
    std::vector<unsigned char> big(size);
    EXPECT_EQ(regQueryValue(key, L"", nullptr, big.data(), &size), ERROR_SUCCESS);
    EXPECT_STREQ(reinterpret_cast<const wchar_t*>(big.data()), L"default value");
    EXPECT_EQ(regQueryValue(key, L"other", nullptr, nullptr, nullptr), ERROR_FILE_NOT_FOUND);
    regCloseKey(key);
}

TEST_F(RegistryTest, ReadOnlyHandleRefusesChanges) {
    HKEY key = nullptr;
    ASSERT_EQ(regCreateKey(HKEY_CURRENT_USER, L"k", &key), ERROR_SUCCESS);
    ASSERT_EQ(setText(key, L"v", L"x"), ERROR_SUCCESS);
    regCloseKey(key);
    ASSERT_EQ(regOpenKey(HKEY_CURRENT_USER, L"k", KEY_READ, &key), ERROR_SUCCESS);
    EXPECT_EQ(setText(key, L"v", L"y"), ERROR_ACCESS_DENIED);
    EXPECT_EQ(regDeleteValue(key, L"v"), ERROR_ACCESS_DENIED);
    regCloseKey(key);
    ASSERT_EQ(regOpenKey(HKEY_CURRENT_USER, L"k", KEY_CHANGE, &key), ERROR_SUCCESS);
    EXPECT_EQ(regDeleteValue(key, L"v"), ERROR_SUCCESS);
    EXPECT_EQ(regDeleteValue(key, L"v"), ERROR_FILE_NOT_FOUND);
    regCloseKey(key);
}

TEST_F(RegistryTest, EnumerationKeepsFirstStoreOrderAndChecksBuffers) {
    HKEY key = nullptr;
    ASSERT_EQ(regCreateKey(HKEY_CURRENT_USER, L"k", &key), ERROR_SUCCESS);
    for (const wchar_t* name : {L"zeta", L"alpha", L"mid", L"zeta"})  // "zeta" keeps its place
        ASSERT_EQ(setText(key, name, name), ERROR_SUCCESS);
    std::vector<std::wstring> names;
    wchar_t name[16];
    for (unsigned long i = 0, units = 16;
         regEnumValue(key, i, name, &units, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
         ++i, units = 16) {
        EXPECT_EQ(units, std::wcslen(name));
        names.emplace_back(name);
    }
    EXPECT_EQ(names, (std::vector<std::wstring>{L"zeta", L"alpha", L"mid"}));
    unsigned long units = 4;  // "zeta" needs 5 with its terminator
    EXPECT_EQ(regEnumValue(key, 0, name, &units, nullptr, nullptr, nullptr), ERROR_MORE_DATA);
    regCloseKey(key);
}

TEST_F(RegistryTest, BadInputIsRefused) {
    HKEY key = nullptr;
    EXPECT_EQ(regCreateKey(nullptr, L"k", &key), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(regCreateKey(HKEY_CURRENT_USER, L"k", nullptr), ERROR_INVALID_PARAMETER);
    const std::wstring longKey(256, L'k');
    EXPECT_EQ(regCreateKey(HKEY_CURRENT_USER, longKey.c_str(), &key), ERROR_INVALID_PARAMETER);
    ASSERT_EQ(regCreateKey(HKEY_CURRENT_USER, L"k", &key), ERROR_SUCCESS);
    std::vector<unsigned char> huge((1u << 20) + 1, 7);
    EXPECT_EQ(
        regSetValue(key, L"big", REG_BINARY, huge.data(), static_cast<unsigned long>(huge.size())),
        ERROR_INVALID_PARAMETER);
    EXPECT_EQ(regQueryValue(key, L"big", nullptr, nullptr, nullptr), ERROR_FILE_NOT_FOUND);
    const std::wstring longName(16384, L'n');
    EXPECT_EQ(regSetValue(key, longName.c_str(), REG_BINARY, huge.data(), 4),
              ERROR_INVALID_PARAMETER);
    EXPECT_EQ(regSetValue(key, L"null", REG_BINARY, nullptr, 4), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(regSetValue(key, L"empty", REG_BINARY, nullptr, 0), ERROR_SUCCESS);
    EXPECT_EQ(regQueryValue(HKEY_CURRENT_USER, L"empty", nullptr, nullptr, nullptr),
              ERROR_INVALID_HANDLE);
    EXPECT_EQ(regCloseKey(nullptr), ERROR_INVALID_HANDLE);
    EXPECT_EQ(regCloseKey(HKEY_CURRENT_USER), ERROR_SUCCESS);
    regCloseKey(key);
}

}  // namespace
}  // namespace ZOR
