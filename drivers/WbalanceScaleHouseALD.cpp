// Scale House ALD. Only the print command has its answer read, a ticket of several lines:
//
//   > "P\r\n"   < "PROJ 12\r\n 130.4 g\r\n 7.0 g T\r\n 123.4 g N\r\n"   N: net, T: tare
//   > "Z\r\n"   zero
//   > "T\r\n"   tare
//
// The form of the ticket is not documented; the marks of the net and the tare line are.

#include <wbalance/WbalanceScaleHouseALD.h>

#include <cmath>
#include <cstring>
#include <string>

#include "CLocale.h"
#include "Exchange.h"
#include "marlet-small.h"

namespace {

constexpr char kName[] = "Scale House ALD";

constexpr char kZero[] = "Z\r\n";
constexpr char kTare[] = "T\r\n";
constexpr char kPrint[] = "P\r\n";

constexpr char kProject[] = "PROJ";
constexpr char kNet[] = " g N";
constexpr char kTareWeight[] = " g T";
constexpr char kGrams[] = " g";

constexpr int kAttempts = 3;
constexpr const char* kNoTerminator = nullptr;

constexpr int kDecimals = 3;  // whatever the ticket shows: hosts rely on it

constexpr auto kNowhere = std::string::npos;

double Number(const std::string& text) {
    return c_locale::NumberIn(text.c_str());
}

/// The text between the last blank before `mark` and the mark; nothing after a double blank.
std::string TextBefore(const std::string& ticket, std::size_t mark) {
    if (mark == 0) return "";
    const std::size_t blank = ticket.rfind(' ', mark - 1);
    const std::size_t start = blank == kNowhere ? 0 : blank + 1;
    return ticket.substr(start, mark - start);
}

/// Whether the ticket has a tare line whose tare is zero. What is tested as the tare runs from the
/// start of the ticket, not from the blank before the number: hosts rely on it.
bool TareIsZero(const std::string& ticket) {
    const std::size_t mark = ticket.find(kTareWeight);
    if (mark == kNowhere) return false;
    std::size_t end = mark == 0 ? 0 : ticket.rfind(' ', mark - 1);
    // A blank at the very start does not count.
    if (end == 0 || end == kNowhere) end = mark;
    return Number(ticket.substr(0, end)) == 0.0;
}

/// Where the mark behind the weight stands.
std::size_t FindMark(const std::string& ticket) {
    const std::size_t net = ticket.find(kNet);
    if (net != kNowhere || !TareIsZero(ticket)) return net;
    exchange::Trace("\nCerco g\n");
    return ticket.find(kGrams);
}

}  // namespace

WbalanceScaleHouseALD::WbalanceScaleHouseALD() {
    SetCommPort(0);
    SetCommConfig(2400, ParityNone, 7, OneStopBit, NoFlowControl, 1, 'S');
}

WbalanceScaleHouseALD::~WbalanceScaleHouseALD() = default;

int WbalanceScaleHouseALD::ParseWeight(char* answer, double* weight, int* decimals) {
    if (answer == nullptr || *answer == '\0' || weight == nullptr) return 0;
    *weight = 0.0;
    if (decimals != nullptr) *decimals = kDecimals;
    const char* project = std::strstr(answer, kProject);
    if (project != nullptr) exchange::Trace("\nTrovato PROJ\n");
    const std::string ticket = project != nullptr ? project : answer;
    const std::size_t mark = FindMark(ticket);
    if (mark == kNowhere) {
        exchange::Trace("\nERRORE NEL PARSING\n");
        return 0;
    }
    *weight = Number(TextBefore(ticket, mark));
    return 1;
}

int WbalanceScaleHouseALD::IsReady() {
    if (OpenAndClear() == 0) return 0;
    double weight = 0.0;
    return Weight(1, &weight, nullptr);
}

int WbalanceScaleHouseALD::Tare() {
    if (serialObject == nullptr || IsReady() == 0) return 0;
    if (exchange::Send(*serialObject, "%s - Zero\n", kName, kZero) == 0) return 0;
    Sleep(2000);
    if (exchange::Send(*serialObject, "%s - Tare\n", kName, kTare) == 0) return 0;
    Sleep(2000);
    double weight = 0.0;
    if (Weight(0, &weight, nullptr) == 0) return 0;
    return std::fabs(weight) < 0.1 ? 1 : 0;
}

int WbalanceScaleHouseALD::Weight(long /*mode*/, double* weight, int* decimals) {
    *weight = 0.0;
    if (serialObject == nullptr || ReadTicket(weight, decimals) == 0) {
        exchange::Trace("Weight procedure failed!");
        return 0;
    }
    exchange::Trace(*serialObject, "%s - weight = %.2lf gr.\n\n", kName, *weight);
    return 1;
}

int WbalanceScaleHouseALD::ReadTicket(double* weight, int* decimals) {
    if (exchange::Send(*serialObject, "%s - Weight\n", kName, kPrint) == 0) return 0;
    Sleep(500);
    exchange::Answer<257> answer;
    if (answer.Receive(*serialObject, kAttempts, kNoTerminator) == 0) return 0;
    return ParseWeight(answer.Text(), weight, decimals);
}

int WbalanceScaleHouseALD::TareSet(double /*preset*/) {
    return 0;
}
