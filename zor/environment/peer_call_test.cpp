// The peer call over a private session bus: a dbus-daemon of the test's own, and peers forked
// from the test that own their names and answer SendData.
#include "zor/environment/peer_call.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <systemd/sd-bus.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "zor/environment/settings.h"
#include "zor/environment/test_support.h"

extern char** environ;

namespace ZOR {
namespace {

using testing::ScopedEnv;
using testing::TempDir;

// How a test peer answers SendData.
enum class PeerKind { good, text, failing };

// The good peer wants the sender "ZOR" and tells code and the number of characters of the text
// apart in its answer; the others answer with a text, or fail the call.
int sendData(sd_bus_message* m, void* kind, sd_bus_error* error) {
    switch (*static_cast<const PeerKind*>(kind)) {
        case PeerKind::text:
            return sd_bus_reply_method_return(m, "s", "no");
        case PeerKind::failing:
            return sd_bus_error_set_const(error, "zor.Error.Refused", "refused");
        case PeerKind::good:
            break;
    }
    const char* sender = nullptr;
    std::int32_t code = 0;
    const char* text = nullptr;
    if (sd_bus_message_read(m, "sis", &sender, &code, &text) < 0) return -EINVAL;
    std::int32_t characters = 0;
    for (const char* p = text; *p != 0; ++p)
        characters += (static_cast<unsigned char>(*p) & 0xC0) != 0x80;
    const std::int32_t answer = std::strcmp(sender, "ZOR") == 0 ? code * 1000 + characters : -99;
    return sd_bus_reply_method_return(m, "i", answer);
}

// One table serves all three kinds: its reply signature is only introspection data, which the
// replies themselves are not held to.
const sd_bus_vtable kPeer[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD("SendData", "sis", "i", sendData, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_VTABLE_END,
};

// Runs in a forked child: serves `vtable` under `name` until killed.
[[noreturn]] void servePeer(const char* name, PeerKind kind) {
    sd_bus* bus = nullptr;
    if (sd_bus_open_user(&bus) < 0 ||
        sd_bus_add_object_vtable(bus, nullptr, kPeerObjectPath, kPeerInterface, kPeer, &kind) < 0 ||
        sd_bus_request_name(bus, name, 0) < 0)
        ::_exit(1);
    for (;;) {
        const int r = sd_bus_process(bus, nullptr);
        if (r < 0) ::_exit(2);
        if (r == 0 && sd_bus_wait(bus, UINT64_MAX) < 0) ::_exit(3);
    }
}

bool waitForOwner(const char* name) {
    for (int attempt = 0; attempt < 500; ++attempt) {
        sd_bus* bus = nullptr;
        int owned = 0;
        if (sd_bus_open_user(&bus) >= 0) {
            sd_bus_message* reply = nullptr;
            if (sd_bus_call_method(bus, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                                   "org.freedesktop.DBus", "NameHasOwner", nullptr, &reply, "s",
                                   name) >= 0)
                sd_bus_message_read(reply, "b", &owned);
            sd_bus_message_unref(reply);
        }
        sd_bus_flush_close_unref(bus);
        if (owned != 0) return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return false;
}

void stop(pid_t pid) {
    if (pid <= 0) return;
    ::kill(pid, SIGKILL);
    ::waitpid(pid, nullptr, 0);
}

// One private bus for the whole suite, with three peers on it, and the classes-root hive in a
// temporary folder.
class PeerCallTest : public ::testing::Test {
  protected:
    static void SetUpTestSuite() {
        dir_ = new TempDir;
        const std::string socket = dir_->path() + "/bus";
        const std::string config = dir_->path() + "/bus.conf";
        if (FILE* f = std::fopen(config.c_str(), "w")) {
            std::fprintf(
                f,
                "<!DOCTYPE busconfig PUBLIC \"-//freedesktop//DTD D-Bus Bus Configuration "
                "1.0//EN\"\n"
                " \"http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd\">\n"
                "<busconfig><type>session</type><listen>unix:path=%s</listen>"
                "<auth>EXTERNAL</auth><policy context=\"default\">"
                "<allow send_destination=\"*\" eavesdrop=\"true\"/><allow eavesdrop=\"true\"/>"
                "<allow own=\"*\"/></policy></busconfig>\n",
                socket.c_str());
            std::fclose(f);
        }
        const std::string configArg = "--config-file=" + config;
        const char* argv[] = {"dbus-daemon", configArg.c_str(), "--nofork", nullptr};
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
        posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
        const int rc = posix_spawnp(&daemon_, "dbus-daemon", &actions, nullptr,
                                    const_cast<char**>(argv), environ);
        posix_spawn_file_actions_destroy(&actions);
        if (rc != 0) daemon_ = -1;
        for (int i = 0; i < 500 && daemon_ > 0; ++i) {
            struct stat st {};
            if (::stat(socket.c_str(), &st) == 0) break;
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        address_ = new ScopedEnv("DBUS_SESSION_BUS_ADDRESS", ("unix:path=" + socket).c_str());
        startPeer(peers_[0], "Zor.Peer._2017", PeerKind::good);
        startPeer(peers_[1], "Zor.TextPeer", PeerKind::text);
        startPeer(peers_[2], "Zor.FailingPeer", PeerKind::failing);
    }

    static void TearDownTestSuite() {
        for (pid_t& peer : peers_) stop(peer);
        stop(daemon_);
        delete address_;
        delete dir_;
    }

    static void startPeer(pid_t& pid, const char* name, PeerKind kind) {
        pid = ::fork();
        if (pid == 0) servePeer(name, kind);
        ready_ = ready_ && pid > 0 && waitForOwner(name);
    }

    void SetUp() override {
        ASSERT_TRUE(daemon_ > 0 && ready_) << "private session bus or peers missing";
    }

    // A classes-root entry with a default value.
    static void registerClass(const wchar_t* key, const wchar_t* value) {
        HKEY handle = nullptr;
        ASSERT_EQ(regCreateKey(HKEY_CLASSES_ROOT, key, &handle), ERROR_SUCCESS);
        EXPECT_TRUE(regWrite(handle, L"", value, false));
        regCloseKey(handle);
    }

    static inline TempDir* dir_ = nullptr;
    static inline ScopedEnv* address_ = nullptr;
    static inline pid_t daemon_ = -1;
    static inline pid_t peers_[3] = {-1, -1, -1};
    static inline bool ready_ = true;

    TempDir hives_;
    ScopedEnv registryDir_{"ZOR_REGISTRY_DIR", hives_.path().c_str()};
};

TEST_F(PeerCallTest, MessageReachesRunningPeerWithSender) {
    EXPECT_EQ(msg_send(L"Zor.Peer.2017", 7, L"h\u00e9llo"), 7005);
    EXPECT_EQ(msg_send(L"Zor.Peer.2017", -3, L""), -3000);
}

TEST_F(PeerCallTest, VersionIndependentProgIdResolvesThroughCurVer) {
    registerClass(L"Zor.Peer\\CurVer", L"Zor.Peer.2017");
    EXPECT_EQ(msg_send(L"Zor.Peer", 1, L"ab"), 1002);
    IDispatch* peer = nullptr;
    EXPECT_EQ(dispatchFromProgID(L"Zor.Peer", &peer), S_OK);
    ASSERT_NE(peer, nullptr);
    EXPECT_STREQ(peer->busName(), "Zor.Peer._2017");
    int answer = 0;
    EXPECT_EQ(peer->SendData(L"other", 1, L"x", answer), S_OK);
    EXPECT_EQ(answer, -99);
    EXPECT_EQ(peer->AddRef(), 2u);
    EXPECT_EQ(peer->Release(), 1u);
    EXPECT_EQ(peer->Release(), 0u);
}

TEST_F(PeerCallTest, NoPeerOrBadAnswerGivesMinusOne) {
    EXPECT_EQ(msg_send(L"Zor.NotRunning", 1, L"x"), -1);
    EXPECT_EQ(msg_send(L"Zor.TextPeer", 1, L"x"), -1);
    EXPECT_EQ(msg_send(L"Zor.FailingPeer", 1, L"x"), -1);
    EXPECT_EQ(msg_send(nullptr, 1, L"x"), -1);
    EXPECT_EQ(msg_send(L"Zor.Peer.2017", 1, nullptr), -1);
    EXPECT_EQ(msg_send(L"NoDots", 1, L"x"), -1);
}

TEST_F(PeerCallTest, DispatchLeavesOutParameterWithoutPeer) {
    auto* sentinel = reinterpret_cast<IDispatch*>(0x1);
    IDispatch* peer = sentinel;
    EXPECT_EQ(dispatchFromProgID(L"Zor.NotRunning", &peer), S_OK);
    EXPECT_EQ(peer, sentinel);
    EXPECT_EQ(dispatchFromProgID(L"bad..name", &peer), CO_E_CLASSSTRING);
    EXPECT_EQ(dispatchFromProgID(L".lead", &peer), CO_E_CLASSSTRING);
    EXPECT_EQ(dispatchFromProgID(nullptr, &peer), E_INVALIDARG);
    EXPECT_EQ(dispatchFromProgID(L"Zor.Peer.2017", nullptr), E_INVALIDARG);
    EXPECT_EQ(peer, sentinel);
}

TEST_F(PeerCallTest, WithoutSessionBusNothingRuns) {
    ScopedEnv noBus("DBUS_SESSION_BUS_ADDRESS", ("unix:path=" + hives_.path() + "/none").c_str());
    EXPECT_EQ(msg_send(L"Zor.Peer.2017", 1, L"x"), -1);
    IDispatch* peer = nullptr;
    EXPECT_EQ(dispatchFromProgID(L"Zor.Peer.2017", &peer), S_OK);
    EXPECT_EQ(peer, nullptr);
}

TEST_F(PeerCallTest, CurrentProgIdAndServerPath) {
    CZorString out(L"untouched");
    EXPECT_FALSE(curProgId(out, L"Zor.App"));
    EXPECT_FALSE(curProgId(out, nullptr));
    EXPECT_STREQ(out, L"untouched");

    registerClass(L"Zor.App\\CurVer", L"Zor.App.3");
    registerClass(L"Zor.App.3\\CLSID", L"{C1}");
    registerClass(L"CLSID\\{C1}\\LocalServer32", L"/bin/sh");
    EXPECT_TRUE(curProgId(out, L"Zor.App"));
    EXPECT_STREQ(out, L"Zor.App.3");
    CZorString path(L"untouched");
    EXPECT_TRUE(serverFromProgID(L"Zor.App", path));
    EXPECT_STREQ(path, L"/bin/sh");

    // The file test takes the stored text as it is, so a quoted or missing server falls back on
    // the 32-bit registration, which gets no file test. The quotes go; parameters behind the
    // closing quote keep it.
    registerClass(L"Zor.Old\\CLSID", L"{C2}");
    registerClass(L"CLSID\\{C2}\\LocalServer32", L"\"/bin/sh\"");
    registerClass(L"Wow6432Node\\CLSID\\{C2}\\LocalServer32", L"\"/bin/old\"");
    EXPECT_TRUE(serverFromProgID(L"Zor.Old", path));
    EXPECT_STREQ(path, L"/bin/old");
    registerClass(L"Wow6432Node\\CLSID\\{C2}\\LocalServer32", L"\"/no/such/old\" /automation");
    EXPECT_TRUE(serverFromProgID(L"Zor.Old", path));
    EXPECT_STREQ(path, L"/no/such/old\" /automation");

    registerClass(L"Zor.Bare\\CLSID", L"{C3}");
    path = L"untouched";
    EXPECT_FALSE(serverFromProgID(L"Zor.Bare", path));
    EXPECT_FALSE(serverFromProgID(L"Zor.Unknown", path));
    EXPECT_FALSE(serverFromProgID(nullptr, path));
    EXPECT_STREQ(path, L"untouched");
}

}  // namespace
}  // namespace ZOR
