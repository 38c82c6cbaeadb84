#pragma once

/// Any driver with a readiness check of the line only: it opens, configures and clears the port,
/// and sends nothing.
///
/// Readiness is a virtual call, and the drivers' operations begin with it. The own check of some
/// drivers spoils the reading that follows:
///
/// - It sends a reset and leaves the balance's answer in the line. The driver then reads this
///   answer as part of the weight.
/// - It asks for a weight, which asks for the check, and so on. No byte reaches the instrument.
/// - It makes a trial reading, which takes time.
///
/// The header and the page of each driver say what its check does. With such a driver, or whenever
/// a host wants the reading and nothing before it:
///
///     WithLineReadiness<Driver> balance;
///     double grams = 0.0;
///     int decimals = 0;
///     int status = balance.Weight(1, &grams, &decimals);
///
/// Some drivers need one IsReady() before their other operations, because these don't open the
/// port. This IsReady() is enough for that.
///
/// Do not use it with a driver whose own check resets the balance or detects its protocol, and
/// remembers that it is done.
///
/// A successful IsReady() means that the port is open. It does not mean that an instrument answers.
/// Results, threads and ownership are those of the driver.
template <class Driver>
class WithLineReadiness : public Driver {
 public:
    using Driver::Driver;

    /// 1 when the port is open, configured and cleared. It sends nothing and waits for nothing.
    int IsReady() override { return Driver::OpenAndClear(); }
};
