#include <wbalance/WbalanceScaleHouseALD.h>

#include "Answers.h"
#include "Operations.h"
#include "drivers/Factory.h"
#include "readings/Ticket.h"

namespace tool {

template <>
DriverInfo InfoOf<WbalanceScaleHouseALD>() {
    DriverInfo driver{"Scale House", "ALD", ReadTicket, LineReady<WbalanceScaleHouseALD>};
    driver.readyFirst = true;
    driver.modes =
        "auto and now: P, the net weight of the ticket; stable: no weight, because a ticket does "
        "not tell whether it is stable";
    driver.recognition.asked = {{"P\r\n", IsTicket}};
    driver.operations = {{Operation::Tare, Weighed(Tare, "zeroes, then tares")}};
    return driver;
}

}  // namespace tool
