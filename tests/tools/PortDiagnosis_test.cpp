// Why a port can't be used, as doctor and weigh say it.

#include <fcntl.h>
#include <gmock/gmock.h>
#include <grp.h>
#include <pwd.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <vector>

#include "Examples.h"
#include "RunProgram.h"
#include "process/Descriptor.h"
#include "simulator/VirtualBench.h"
#include "simulator/line/VirtualLine.h"

using examples::kBalance;
using simulator::Options;
using simulator::VirtualBench;
using simulator::VirtualLine;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

namespace {

bool IsRoot() {
    return geteuid() == 0;
}

class PortDiagnosis : public testing::Test {
 protected:
    void OnLine(const std::function<void(VirtualLine&)>& work) {
        balance_.WithLine(
            [&work](simulator::HostLine& line) { work(dynamic_cast<VirtualLine&>(line)); });
    }

    /// Expects that both commands end with this about /dev/ttyUSB0. `before` is run ahead of each,
    /// `as` stands in front of its command.
    void ExpectSaid(
        const std::string& sentence, const std::function<void()>& before = [] {},
        const std::string& as = "env ") {
        before();
        const Ran examined = RunShell(as + WBALANCE " doctor -d " + kBalance + " -p 0 --usb");
        EXPECT_THAT(examined.output, EndsWith("\ndiagnosis      /dev/ttyUSB0" + sentence + "\n"));
        EXPECT_EQ(examined.errors, "");
        EXPECT_EQ(examined.exitCode, 3);
        before();
        const Ran weighed = RunShell(as + WBALANCE " weigh -d " + kBalance + " -p 0 --usb");
        EXPECT_EQ(weighed.output, "");
        EXPECT_EQ(weighed.errors, "wbalance: /dev/ttyUSB0" + sentence + "\n");
        EXPECT_EQ(weighed.exitCode, 3);
    }

    VirtualBench bench_;
    simulator::ConnectedInstrument& balance_ =
        bench_.Place(kBalance, Options().On("/dev/ttyUSB0").WithLoad(3));
};

/// Nothing keeps root out. So for root `nobody` meets the node, with the right to read this build
/// and the bench's files wherever they are; anybody else meets it as who they are.
class ForbiddenPort : public PortDiagnosis {
 protected:
    static constexpr uid_t kNobody = 65534;
    static constexpr gid_t kNameless = 424242;

    void ExpectForbidden(const VirtualLine::Node& node, const std::string& why,
                         const std::string& as) {
        OnLine([&node](VirtualLine& line) {
            line.SetNode(node);
            line.RefuseOpen(EACCES);
        });
        ExpectSaid(
            ": permission denied; " + why, [] {}, as);
    }
    void ExpectForbidden(const VirtualLine::Node& node, const std::string& why) {
        ExpectForbidden(node, why, As(Group()));
    }

    static std::string As(gid_t group) {
        if (!IsRoot()) return "env ";
        return "setpriv --reuid=65534 --clear-groups --regid=" + std::to_string(group) +
               " --inh-caps=+dac_override --ambient-caps=+dac_override env ";
    }
    static uid_t User() { return IsRoot() ? kNobody : geteuid(); }
    static gid_t Group() { return IsRoot() ? kNobody : getegid(); }
    static std::string UserName() {
        const auto* user = getpwuid(User());
        return user != nullptr ? user->pw_name : std::to_string(User());
    }

    /// A group that has a name and that the user is not in.
    static const group* OthersGroup() {
        std::vector<gid_t> own(65536);
        int count = static_cast<int>(own.size());
        getgrouplist(UserName().c_str(), Group(), own.data(), &count);
        own.resize(static_cast<std::size_t>(count));
        std::vector<gid_t> joined(65536);
        joined.resize(static_cast<std::size_t>(
            std::max(getgroups(static_cast<int>(joined.size()), joined.data()), 0)));
        own.insert(own.end(), joined.begin(), joined.end());
        setgrent();
        while (const group* each = getgrent()) {
            if (each->gr_gid != 0 && std::find(own.begin(), own.end(), each->gr_gid) == own.end())
                return each;
        }
        return nullptr;
    }
};

TEST_F(ForbiddenPort, Somebody_who_is_not_in_its_group_is_told_how_to_join) {
    const group* others = OthersGroup();
    ASSERT_NE(others, nullptr);
    const std::string name = others->gr_name;
    ExpectForbidden({0660, 0, others->gr_gid},
                    "its group is " + name + ", you are not in it: sudo adduser " + UserName() +
                        " " + name + ", then log out and in again");
}

TEST_F(ForbiddenPort, Somebody_who_joined_the_group_after_the_login_is_told_to_log_in_anew) {
    if (!IsRoot()) GTEST_SKIP() << "only root runs a program without its user's own group";
    const group* own = getgrgid(kNobody);
    ASSERT_NE(own, nullptr);
    const std::string name = own->gr_name;
    ExpectForbidden(
        {0660, 0, kNobody},
        "its group is " + name + ", which you joined after you had logged in: log out and in again",
        As(kNameless));
}

TEST_F(ForbiddenPort, A_node_that_is_its_owners_alone_leads_to_its_udev_rule) {
    ExpectForbidden({0600, 424241, kNameless},
                    "its owner is 424241, its group 424242, its mode 0600, which keeps you out: "
                    "check its udev rule");
}

TEST_F(ForbiddenPort, Nobody_is_told_to_join_the_group_of_root) {
    ExpectForbidden({0660, 0, 0},
                    "its owner is root, its group root, its mode 0660, which keeps you out: check "
                    "its udev rule");
}

TEST_F(ForbiddenPort, Nobody_is_told_to_join_a_group_that_has_no_name_here) {
    ExpectForbidden({0660, 0, kNameless},
                    "its owner is root, its group 424242, its mode 0660, which keeps you out: "
                    "check its udev rule");
}

TEST_F(ForbiddenPort, An_owner_without_rights_is_not_told_to_join_the_group) {
    const group* others = OthersGroup();
    ASSERT_NE(others, nullptr);
    const std::string name = others->gr_name;
    ExpectForbidden({0060, User(), others->gr_gid},
                    "its owner is " + UserName() + ", its group " + name +
                        ", its mode 0060, which keeps you out: check its udev rule");
}

constexpr char kPolicy[] =
    "its rights let you use it, so look for a container or a security policy that forbids it";

TEST_F(ForbiddenPort, A_member_of_its_group_is_led_to_the_container_or_policy) {
    ExpectForbidden({0660, 0, Group()}, kPolicy);
}

TEST_F(ForbiddenPort, Its_owner_is_led_to_the_container_or_policy) {
    ExpectForbidden({0600, User(), kNameless}, kPolicy);
}

TEST_F(ForbiddenPort, Anybody_is_led_to_the_container_or_policy_where_anybody_may_use_it) {
    ExpectForbidden({0666, 0, kNameless}, kPolicy);
}

TEST_F(ForbiddenPort, Root_is_led_to_the_container_or_policy) {
    if (!IsRoot()) GTEST_SKIP() << "needs root";
    ExpectForbidden({0600, 424241, kNameless}, kPolicy, "env ");
}

TEST_F(PortDiagnosis, A_claim_by_nobody_who_can_be_seen_is_another_users) {
    OnLine([](VirtualLine& line) { line.RefuseOpen(EBUSY); });
    ExpectSaid(
        ": the port is in use; another user's program holds it: see sudo fuser -v /dev/ttyUSB0");
}

TEST_F(PortDiagnosis, A_node_without_a_device_is_said_to_have_none) {
    OnLine([](VirtualLine& line) { line.RefuseOpen(ENODEV); });
    ExpectSaid(
        ": the node is there but no device is behind it (No such device); plug the adapter in "
        "again");
}

TEST_F(PortDiagnosis, A_node_that_opens_but_is_no_terminal_has_no_port) {
    OnLine([](VirtualLine& line) { line.TakePortAway(); });
    ExpectSaid(": no serial port is behind it; `wbalance ports` lists those that are there");
}

TEST_F(PortDiagnosis, Any_other_refusal_is_told_in_the_systems_words) {
    OnLine([](VirtualLine& line) { line.RefuseOpen(EISDIR); });
    ExpectSaid(": Is a directory");
}

TEST_F(PortDiagnosis, A_refusal_that_has_passed_asks_for_another_try) {
    ExpectSaid(": the port could not be opened a moment ago but can be now; try again",
               [this] { OnLine([](VirtualLine& line) { line.RefuseNextOpen(EBUSY); }); });
}

TEST_F(PortDiagnosis, A_lock_file_that_cannot_be_taken_away_is_named) {
    // As little to be taken away by the library as another user's file is, also for root.
    std::filesystem::create_directory(bench_.Directory() / "LCK..ttyUSB0");
    ExpectSaid(
        ": the lock file of a program that has ended keeps the port closed: sudo rm "
        "/var/lock/LCK..ttyUSB0");
}

TEST_F(PortDiagnosis, An_adapter_that_cannot_do_the_settings_is_said_to_refuse_them) {
    OnLine([](VirtualLine& line) { line.RefuseSpeed(B2400); });
    ExpectSaid(
        ": the port refuses the line settings 2400,7E1; choose others with --line, or use another "
        "adapter");
}

TEST_F(PortDiagnosis, CTS_that_is_off_is_seen_before_anything_is_sent_in_vain) {
    OnLine([](VirtualLine& line) { line.SetInstrumentControlLines(TIOCM_DSR); });
    const Ran ran = Wbalance("doctor -d " + kBalance + " -p 0 --usb -l 2400,7E1,rtscts");
    EXPECT_THAT(ran.output, EndsWith("control lines  CTS off, DSR on, DCD off\n"
                                     "diagnosis      /dev/ttyUSB0: CTS is off, so nothing can be "
                                     "sent with rtscts; switch the balance on, use a cable that "
                                     "carries CTS, or leave rtscts out of --line\n"));
    EXPECT_EQ(ran.exitCode, 4);
}

TEST_F(PortDiagnosis, CTS_does_not_matter_where_nothing_waits_for_it) {
    OnLine([](VirtualLine& line) { line.SetInstrumentControlLines(0); });
    const Ran ran = Wbalance("doctor -d " + kBalance + " -p 0 --usb -t 0");
    EXPECT_THAT(ran.output, HasSubstr("control lines  CTS off, DSR off, DCD off\n"));
    EXPECT_EQ(ran.exitCode, 0);
}

// The lock file of a port, as serial programs leave it while they have the port open.
class Lock {
 public:
    explicit Lock(pid_t holder) {
        const int file = open(kPath, O_WRONLY | O_CREAT | O_TRUNC, 0644);
        const std::string text = std::to_string(holder) + "\nPortDiagnosis_test\n\n";
        EXPECT_EQ(write(file, text.data(), text.size()), static_cast<ssize_t>(text.size()));
        close(file);
    }
    ~Lock() { unlink(kPath); }

    static constexpr char kPath[] = "/var/lock/LCK..ttyUSB0";
};

TEST_F(PortDiagnosis, The_program_that_holds_the_port_is_named) {
    const Lock lock(getpid());
    const tool::Descriptor port(open("/dev/ttyUSB0", O_RDWR | O_NOCTTY | O_CLOEXEC));
    const std::string held = "held by PortDiagnosis_t (process " + std::to_string(getpid()) +
                             "): end that program first\n";

    const Ran examined = Wbalance("doctor -d " + kBalance + " -p 0 --usb");
    EXPECT_THAT(examined.output,
                EndsWith("\ndiagnosis      /dev/ttyUSB0: the port is in use; it is " + held));
    EXPECT_EQ(examined.exitCode, 3);

    const Ran weighed = Wbalance("weigh -d " + kBalance + " -p 0 --usb");
    EXPECT_EQ(weighed.errors, "wbalance: /dev/ttyUSB0: the port is in use; it is " + held);
    EXPECT_EQ(weighed.exitCode, 3);
}

TEST_F(PortDiagnosis, A_program_that_only_has_the_number_in_a_lock_file_is_not_blamed) {
    const Lock lock(getpid());
    const Ran ran = Wbalance("doctor -d " + kBalance + " -p 0 --usb -t 0");
    EXPECT_THAT(ran.output, Not(HasSubstr("held by")));
    EXPECT_THAT(ran.output, HasSubstr("access         opens, nobody else holds it\n"));
}

TEST_F(PortDiagnosis, A_lock_file_that_is_none_stops_nothing) {
    const std::string ended = RunShell("echo $$").output;
    const std::string path = (bench_.Directory() / "LCK..ttyUSB0").string();
    const auto examine = [&](const std::string& make) {
        RunShell(make);
        for (const std::string& command :
             {"doctor -d " + kBalance + " -p 0 --usb -t 0", std::string("ports"),
              "weigh -d " + kBalance + " -p 0 --usb -t 0", std::string("detect -p 0 --usb")}) {
            const Ran ran = RunShell("timeout 60 env " WBALANCE " " + command);
            EXPECT_NE(ran.exitCode, 124) << make << ": " << command;
            EXPECT_THAT(ran.exitCode, testing::AnyOf(0, 3)) << make << ": " << command;
        }
        RunShell("rm -r " + path);
    };
    examine("mkfifo " + path);
    examine("mkdir " + path);
    examine("ln -s /dev/zero " + path);
    examine("yes 1234567890 | head -c 9000000 >" + path);
}

TEST_F(PortDiagnosis, The_lock_of_a_program_that_has_ended_holds_nothing) {
    const Ran ended = RunShell("echo $$");
    const Lock lock(std::stoi(ended.output));
    EXPECT_EQ(Wbalance("weigh -d " + kBalance + " -p 0 --usb -t 0").output, "3.00 g\n");
}

TEST_F(PortDiagnosis, Detect_goes_on_behind_line_settings_that_the_port_refuses_and_names_them) {
    OnLine([](VirtualLine& line) { line.RefuseSpeed(B2400); });
    balance_.AddFault("silent");
    const Ran ran = RunShell(WBALANCE " detect -p 0 --usb --json");
    EXPECT_THAT(ran.errors, HasSubstr("\ntrying 9600,8N1\n"));
    EXPECT_THAT(ran.errors, HasSubstr("\nrefused by the port: 2400,7E1"));
    EXPECT_THAT(ran.output, HasSubstr("\"refused\":[\"2400,7E1\""));
    EXPECT_THAT(ran.output, HasSubstr("\"status\":\"error\""));
    EXPECT_EQ(ran.exitCode, 4);
}

TEST_F(PortDiagnosis, An_adapter_that_can_do_no_settings_at_all_is_said_to_refuse_them) {
    OnLine([](VirtualLine& line) { line.RefuseEverySpeed(); });
    const std::string sentence = ": the port refuses all line settings; use another adapter";
    ExpectSaid(sentence);
    const Ran told = Wbalance("detect -p 0 --usb");
    EXPECT_EQ(told.output, "");
    EXPECT_EQ(told.errors, "trying 2400,7E1\nwbalance: /dev/ttyUSB0" + sentence + "\n");
    EXPECT_EQ(told.exitCode, 3);
    const Ran written = Wbalance("detect -p 0 --usb --thorough --json");
    EXPECT_THAT(written.output, HasSubstr("\"message\":\"/dev/ttyUSB0" + sentence + "\""));
    EXPECT_THAT(written.output, HasSubstr("\"status\":\"error\""));
    EXPECT_EQ(written.exitCode, 3);
}

// Another user's process may be that which made the lock file, or may only have its number.
TEST_F(ForbiddenPort, A_process_that_cannot_be_looked_into_is_named_but_not_blamed) {
    if (!IsRoot()) GTEST_SKIP() << "needs root";
    // As the directory of the locks is: anybody's.
    RunShell("chmod -R a+rwX " + bench_.Directory().string());
    const Ran first = RunShell("cat /proc/1/comm");
    const std::string name = first.output.substr(0, first.output.find('\n'));
    const std::string held = "held by a program that may be " + name +
                             " (process 1): end that program first; or, where it does not use the "
                             "port, sudo rm /var/lock/LCK..ttyUSB0\n";
    const Lock lock(1);
    const Ran examined =
        RunShell(As(Group()) + WBALANCE " doctor -d " + kBalance + " -p 0 --usb -t 0");
    EXPECT_THAT(examined.output,
                EndsWith("\ndiagnosis      /dev/ttyUSB0: the port is in use; it is " + held));
    EXPECT_EQ(examined.exitCode, 3);
    const Ran detected = RunShell(As(Group()) + WBALANCE " detect -p 0 --usb");
    EXPECT_EQ(detected.errors, "wbalance: /dev/ttyUSB0: the port is in use; it is " + held);
    EXPECT_EQ(detected.exitCode, 3);
}

}  // namespace
