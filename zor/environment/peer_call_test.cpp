// The peer call over a private session bus: a dbus-daemon of the test's own, and a peer forked
// from the test that owns three names and answers SendData on each.
#include "zor/environment/peer_call.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <systemd/sd-bus.h>
#include <unistd.h>

#include <cstring>
#include <string>

#include "zor/environment/settings.h"
#include "zor/environment/test_support.h"

extern char** environ;

namespace ZOR {
namespace {

using testing::ScopedEnv;
using testing::TempDir;

constexpr const char* kPeerNames[] = {"Zor.Peer._2017", "Zor.TextPeer", "Zor.FailingPeer"};

// The name called picks the answer: "Zor.TextPeer" answers with a text and "Zor.FailingPeer"
// fails the call; the good peer wants the sender "ZOR" and tells code and the number of
// characters of the text apart in its answer.
int sendData(sd_bus_message* m, void*, sd_bus_error* error) {
    const std::string to = sd_bus_message_get_destination(m);
    if (to == kPeerNames[1]) return sd_bus_reply_method_return(m, "s", "no");
    if (to == kPeerNames[2]) return sd_bus_error_set_const(error, "zor.Error.Refused", "refused");
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

// The reply signature is only introspection data, which the replies themselves are not held to.
const sd_bus_vtable kPeer[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD("SendData", "sis", "i", sendData, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_VTABLE_END,
};

// Runs in a forked child: owns the peer names, says "up" on `up`, and serves until killed.
[[noreturn]] void servePeer(int up) {
    sd_bus* bus = nullptr;
    if (sd_bus_open_user(&bus) < 0 ||
        sd_bus_add_object_vtable(bus, nullptr, kPeerObjectPath, kPeerInterface, kPeer, nullptr) < 0)
        ::_exit(1);
    for (const char* name : kPeerNames)
        if (sd_bus_request_name(bus, name, 0) < 0) ::_exit(1);
    if (::write(up, "up\n", 3) != 3) ::_exit(1);
    for (;;) {
        const int r = sd_bus_process(bus, nullptr);
        if (r < 0 || (r == 0 && sd_bus_wait(bus, UINT64_MAX) < 0)) ::_exit(2);
    }
}

// A line from `fd`, which is closed then; empty if the writer ended first. Blocking reads wait
// for readiness without any polling.
std::string readLine(int fd) {
    std::string line;
    for (char c = 0; ::read(fd, &c, 1) == 1 && c != '\n';) line += c;
    ::close(fd);
    return line;
}

// One private bus with the peer on it for the whole suite; the hives of each test in a fresh
// folder.
class PeerCallTest : public testing::RegistryTest {
  protected:
    static void SetUpTestSuite() {
        bus_ = new TempDir;
        int address[2];
        int up[2];
        if (::pipe2(address, O_CLOEXEC) != 0 || ::pipe2(up, O_CLOEXEC) != 0) return;
        // The standard session policy, listening in a folder of the test's own; the daemon
        // prints its address once it accepts connections.
        const std::string listen = "--address=unix:dir=" + bus_->path();
        const char* argv[] = {"dbus-daemon",       "--session",    "--nofork",
                              "--print-address=1", listen.c_str(), nullptr};
        posix_spawn_file_actions_t io;
        posix_spawn_file_actions_init(&io);
        posix_spawn_file_actions_adddup2(&io, address[1], 1);
        posix_spawn_file_actions_addopen(&io, 2, "/dev/null", O_WRONLY, 0);
        if (posix_spawnp(&daemon_, "dbus-daemon", &io, nullptr, const_cast<char**>(argv),
                         environ) != 0)
            daemon_ = -1;
        posix_spawn_file_actions_destroy(&io);
        ::close(address[1]);
        const std::string bus = readLine(address[0]);
        address_ = new ScopedEnv("DBUS_SESSION_BUS_ADDRESS", bus.c_str());
        if (!bus.empty() && (peer_ = ::fork()) == 0) servePeer(up[1]);
        ::close(up[1]);
        ready_ = peer_ > 0 && readLine(up[0]) == "up";
    }

    static void TearDownTestSuite() {
        for (const pid_t pid : {peer_, daemon_}) {
            if (pid <= 0) continue;
            ::kill(pid, SIGKILL);
            ::waitpid(pid, nullptr, 0);
        }
        delete address_;
        delete bus_;
    }

    void SetUp() override { ASSERT_TRUE(ready_) << "private session bus or peer missing"; }

    // Classes-root entries with their default values.
    static void registerClasses(
        std::initializer_list<std::pair<const wchar_t*, const wchar_t*>> e) {
        for (const auto& [key, value] : e) {
            HKEY handle = nullptr;
            ASSERT_EQ(regCreateKey(HKEY_CLASSES_ROOT, key, &handle), ERROR_SUCCESS);
            EXPECT_TRUE(regWrite(handle, L"", value, false));
            regCloseKey(handle);
        }
    }

    static inline TempDir* bus_ = nullptr;
    static inline ScopedEnv* address_ = nullptr;
    static inline pid_t daemon_ = -1;
    static inline pid_t peer_ = -1;
    static inline bool ready_ = false;
};

TEST_F(PeerCallTest, MessagesReachRunningPeersOnlyAndOnlyNumbersAnswer) {
    EXPECT_EQ(msg_send(L"Zor.Peer.2017", 7, L"h\u00e9llo"), 7005);  // from "ZOR", 5 characters
    EXPECT_EQ(msg_send(L"Zor.Peer.2017", -3, L""), -3000);
    EXPECT_EQ(msg_send(L"Zor.NotRunning", 1, L"x"), -1);
    EXPECT_EQ(msg_send(L"Zor.TextPeer", 1, L"x"), -1);
    EXPECT_EQ(msg_send(L"Zor.FailingPeer", 1, L"x"), -1);
    EXPECT_EQ(msg_send(nullptr, 1, L"x"), -1);
    EXPECT_EQ(msg_send(L"Zor.Peer.2017", 1, nullptr), -1);
    EXPECT_EQ(msg_send(L"NoDots", 1, L"x"), -1);
}

TEST_F(PeerCallTest, VersionIndependentProgIdResolvesThroughCurVer) {
    registerClasses({{L"Zor.Peer\\CurVer", L"Zor.Peer.2017"}});
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

TEST_F(PeerCallTest, DispatchLeavesOutParameterWithoutPeerOrBus) {
    auto* sentinel = reinterpret_cast<IDispatch*>(0x1);
    IDispatch* peer = sentinel;
    EXPECT_EQ(dispatchFromProgID(L"Zor.NotRunning", &peer), S_OK);
    EXPECT_EQ(dispatchFromProgID(L"bad..name", &peer), CO_E_CLASSSTRING);
    EXPECT_EQ(dispatchFromProgID(L".lead", &peer), CO_E_CLASSSTRING);
    EXPECT_EQ(dispatchFromProgID(nullptr, &peer), E_INVALIDARG);
    EXPECT_EQ(dispatchFromProgID(L"Zor.Peer.2017", nullptr), E_INVALIDARG);
    EXPECT_EQ(peer, sentinel);

    ScopedEnv noBus("DBUS_SESSION_BUS_ADDRESS", ("unix:path=" + dir_.path() + "/none").c_str());
    EXPECT_EQ(msg_send(L"Zor.Peer.2017", 1, L"x"), -1);
    EXPECT_EQ(dispatchFromProgID(L"Zor.Peer.2017", &peer), S_OK);
    EXPECT_EQ(peer, sentinel);
}

TEST_F(PeerCallTest, CurrentProgIdAndServerPath) {
    CZorString out(L"untouched");
    EXPECT_FALSE(curProgId(out, L"Zor.App") || curProgId(out, nullptr));
    EXPECT_STREQ(out, L"untouched");

    registerClasses({{L"Zor.App\\CurVer", L"Zor.App.3"},
                     {L"Zor.App.3\\CLSID", L"{C1}"},
                     {L"CLSID\\{C1}\\LocalServer32", L"/bin/sh"},
                     {L"Zor.Old\\CLSID", L"{C2}"},
                     {L"CLSID\\{C2}\\LocalServer32", L"\"/bin/sh\""},
                     {L"Wow6432Node\\CLSID\\{C2}\\LocalServer32", L"\"/bin/old\""},
                     {L"Zor.Bare\\CLSID", L"{C3}"}});
    EXPECT_TRUE(curProgId(out, L"Zor.App"));
    EXPECT_STREQ(out, L"Zor.App.3");
    CZorString path(L"untouched");
    EXPECT_TRUE(serverFromProgID(L"Zor.App", path));
    EXPECT_STREQ(path, L"/bin/sh");

    // The file test takes the stored text as it is, so a quoted or missing server falls back on
    // the 32-bit registration, which gets no file test. The quotes go; parameters behind the
    // closing quote keep it.
    EXPECT_TRUE(serverFromProgID(L"Zor.Old", path));
    EXPECT_STREQ(path, L"/bin/old");
    registerClasses(
        {{L"Wow6432Node\\CLSID\\{C2}\\LocalServer32", L"\"/no/such/old\" /automation"}});
    EXPECT_TRUE(serverFromProgID(L"Zor.Old", path));
    EXPECT_STREQ(path, L"/no/such/old\" /automation");

    path = L"untouched";
    EXPECT_FALSE(serverFromProgID(L"Zor.Bare", path) || serverFromProgID(L"Zor.Unknown", path) ||
                 serverFromProgID(nullptr, path));
    EXPECT_STREQ(path, L"untouched");
}

}  // namespace
}  // namespace ZOR
