#pragma once

/// Any driver with a readiness check that is the line's alone: open, configure and clear, and
/// nothing sent.
///
/// Readiness is a virtual call, and the drivers' operations begin with it. In some drivers the
/// driver's own check stands in the way of the reading that follows:
///
/// - Generic Mettler Toledo: the check sends the reset "@" and leaves its answer (I4 A
///   "1126493049") to be read as part of the weight answer, so that a balance that answers the
///   reset reads as 4 g.
/// - Kern EW/EG-N/EWB and Gibertini: the check asks for a weight, which asks for the check, and so
///   on; no byte reaches the instrument.
/// - Ohaus: a tare costs a trial reading first.
///
/// With these, and wherever a host wants the reading and nothing before it:
///
///     WithLineReadiness<WbalanceMettlerToledo> balance;
///     double grams = 0.0;
///     int decimals = 0;
///     int status = balance.Weight(1, &grams, &decimals);
///
/// The drivers whose other operations don't open the port (Sartorius, Ohaus, Scale House, XL-1800,
/// EL-2000S `Weight`) need one IsReady() before them; this one is enough for that.
///
/// Do not use it where the reset is wanted: the PR2003, XS, SB32001 and PM drivers reset or detect
/// in their own check and remember that it is done.
///
/// A successful IsReady() says that the line is open, not that an instrument answers on it.
/// Results, threads, ownership: as for the driver.
template <class Driver>
class WithLineReadiness : public Driver {
 public:
    using Driver::Driver;

    /// 1 when the port is open, configured and cleared. Nothing is sent and nothing waited for.
    int IsReady() override { return Driver::OpenAndClear(); }
};
