#pragma once

#include <Instruments.h>
#include <gtest/gtest.h>
#include <wbalance/wbalance.h>

#include <string>

/// The drivers as a list for typed tests, in the order of drivers/instruments.txt.
namespace driver_types {

template <class Unused, class... Drivers>
struct Without {
    using Types = testing::Types<Drivers...>;
};

#define WBALANCE_DRIVER_TYPE(name, Class) , Class
using All = Without<void WBALANCE_FOR_EACH_INSTRUMENT(WBALANCE_DRIVER_TYPE)>::Types;
#undef WBALANCE_DRIVER_TYPE

/// Names the rows of a typed test after their drivers.
struct Name {
    template <class Driver>
    static std::string GetName(int /*row*/) {
        const std::string name = testing::internal::GetTypeName<Driver>();
        return name.substr(name.find_last_of(' ') + 1);
    }
};

}  // namespace driver_types
