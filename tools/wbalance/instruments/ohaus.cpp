#include <wbalance/WbalanceOHAUS_SPU602.h>

#include "Answers.h"
#include "Operations.h"
#include "drivers/Factory.h"
#include "readings/Ohaus.h"
#include "readings/Ticket.h"

namespace tool {
namespace {

// "       12.73 g    ?", which a ticket of another maker's may look like.
bool IsPrintLine(const std::string& answer) {
    return IsWeight<ReadOhaus>(answer) && !IsTicket(answer);
}

}  // namespace

template <>
DriverInfo InfoOf<WbalanceOHAUS_SPU602>() {
    DriverInfo driver{"Ohaus", "Scout Pro, Explorer", ReadOhaus,
                      Plain<Resetting<WbalanceOHAUS_SPU602>>};
    driver.readyFirst = true;
    driver.modes = "stable: SP (a Scout Pro may not know it); auto and now: P, also while moving";
    driver.question = {"P\r\n"};
    // A Scout Pro knows V alone.
    driver.identity = {{"V\r\n", &Identity::softwareVersion}, {"PSN\r\n", &Identity::serialNumber}};
    driver.menu.onRequest = "automatic print to off";
    driver.menu.whenSilent = "stable only to off";
    driver.recognition.asked = {{"P\r\n", IsPrintLine}};
    driver.operations = {
        {Operation::Tare, Weighed(Tare, "its check reads with SP, which a Scout Pro may not know")},
        {Operation::FactoryReset, Trusted(FactoryReset, "may reset the line settings too")}};
    return driver;
}

}  // namespace tool
