#include "drivers/DriverTable.h"

#include <gmock/gmock.h>
#include <wbalance/wbalance.h>

#include "Facts.h"
#include "ToolError.h"

using tool::FindDriver;
using tool::Operation;

namespace {

template <class Driver>
void ExpectRow(const facts::Instrument& expected, const std::string& driverClass) {
    SCOPED_TRACE(expected.name);
    const tool::DriverInfo& row = FindDriver(expected.name);
    EXPECT_EQ(row.driverClass, driverClass);
    const auto balance = row.construct();
    EXPECT_NE(dynamic_cast<Driver*>(balance.get()), nullptr);
    EXPECT_EQ(dynamic_cast<WithLineReadiness<Driver>*>(balance.get()) == nullptr,
              expected.ownReadiness);
    EXPECT_NE(row.interpret, nullptr);
    EXPECT_EQ(row.maker + ", " + row.models, expected.title);
    EXPECT_NE(row.modes, "");
    EXPECT_EQ(row.line.Text(), expected.line);
    EXPECT_EQ(row.readyFirst, expected.readyFirst);
    EXPECT_TRUE(row.Has(Operation::Tare));
    std::string operations;
    for (const auto& [operation, info] : row.operations)
        operations += (operations.empty() ? "" : " ") + WordFor(operation);
    EXPECT_EQ(operations, expected.operations);
}

TEST(DriverTable, Every_instrument_of_the_list_has_a_row_that_makes_its_driver) {
    auto expected = facts::All().begin();
#define WBALANCE_EXPECT_ROW(name, Class) ExpectRow<Class>(*expected++, #Class);
    WBALANCE_FOR_EACH_INSTRUMENT(WBALANCE_EXPECT_ROW)
#undef WBALANCE_EXPECT_ROW
    EXPECT_EQ(tool::Drivers().size(), facts::All().size());
}

TEST(DriverTable, An_unknown_name_is_a_usage_error) {
    try {
        FindDriver("nobody");
        FAIL() << "found";
    } catch (const tool::ToolError& error) {
        EXPECT_EQ(error.code, tool::ExitCode::Usage);
    }
}

}  // namespace
