#pragma once

#include <string>

class WbalanceMettlerToledo;
class WbalanceMettlerXS;
class WbalanceRadwag;
class WbalanceKern_EW_EGN_EWB;

/// Instruments for tests in which any instrument would do. Such a test names none itself:
///
///     WbalanceWith(kBalance + " --load 12.5", "weigh --driver " + kBalance);
///
/// What holds of one instrument alone stands in that instrument's own files.
namespace examples {

/// Answers "S\r\n" with "S S      12.50 g\r\n". Its line is 2400,7E1.
inline const std::string kBalance = "mettler-toledo";
inline const std::string kBalanceLine = "2400,7E1";
inline const std::string kBalanceClass = "WbalanceMettlerToledo";
using Balance = WbalanceMettlerToledo;

/// Another maker's beside it. It answers "S\r\n", too, but first with "S A\r\n": the command is in
/// progress. Its line is 9600,7E1.
inline const std::string kOtherBalance = "radwag";
inline const std::string kOtherBalanceLine = "9600,7E1";
inline const std::string kOtherBalanceClass = "WbalanceRadwag";
using OtherBalance = WbalanceRadwag;

/// A third one, whose commands no other instrument knows: it answers "O9\r\n" with
/// "A00\r\n+  12.50 G S\r\n". Its line is 1200,8N2.
inline const std::string kThirdBalance = "kern";
inline const std::string kThirdBalanceLine = "1200,8N2";
inline const std::string kThirdBalanceClass = "WbalanceKern_EW_EGN_EWB";
using ThirdBalance = WbalanceKern_EW_EGN_EWB;

/// One with an operation of every kind: it tares, takes a preset tare, shows a text, is switched on
/// and off, and confirms each. It weighs to four decimals.
inline const std::string kBalanceWithPanel = "mettler-xs";

/// The same where its line matters: 9600,8N1 is also what a port has before a host sets it. It
/// answers "S\r\n" with "S S    12.5000 g\r\n".
inline const std::string kBalanceAt8N1 = kBalanceWithPanel;
using BalanceAt8N1 = WbalanceMettlerXS;

}  // namespace examples
