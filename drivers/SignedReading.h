#pragma once

class CSerialObject;

/// The reading that the Denver Instrument XL-1800 and the Setra EL-2000S have in common.
///
/// The balance answers a request with a line in which "1+" or "1-" marks a stable value and "U+" or
/// "U-" an unstable one; the number follows the sign. The line has no fixed length and may come in
/// pieces with gaps. So the driver collects it until nothing comes for a whole time-out.
namespace signed_reading {

/// Requests a weight, up to five times, until an answer can be accepted: a stable one, or in mode 2
/// an unstable one, too. Traces every step.
///
/// @param displayName begins the trace lines
/// @param command what requests the weight
/// @param weight is set to 0.0 and then receives what each answer that came is parsed to
/// @return 1 when an answer was accepted, else 0
int Read(CSerialObject& serial, const char* displayName, const char* command, long mode,
         double* weight);

/// The weight in an answer.
/// @param weight receives 0.0 first and the value of a marked answer
/// @return 1 stable, 2 unstable, 0 an answer without a mark
int Parse(const char* answer, double* weight);

}  // namespace signed_reading
