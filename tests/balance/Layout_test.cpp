// The binary interface beside the symbols: sizes, the places of the fields, the order of the
// virtual functions. A change here asks for a new soname.

#include "DriverTypes.h"
#include "PlainBalance.h"

using scripted::Open;

namespace {

template <class Object, class Field>
long Offset(const Object& object, const Field& field) {
    return reinterpret_cast<const char*>(&field) - reinterpret_cast<const char*>(&object);
}

class SerialFields : public CSerialObject {
 public:
    using CSerialObject::port;
    using CSerialObject::portKind;
    using CSerialObject::status;
    using CSerialObject::timeoutMs;
};

TEST(Layout, Of_the_transport) {
    const SerialFields serial;
    EXPECT_EQ(Offset(serial, serial.status), 0);
    EXPECT_EQ(Offset(serial, serial.timeoutMs), 8);
    EXPECT_EQ(Offset(serial, serial.port), 16);
    EXPECT_EQ(Offset(serial, serial.portKind), 24);
    EXPECT_EQ(sizeof(CSerialObject), 32U);
    EXPECT_EQ(sizeof serial.status, 4U);
    EXPECT_EQ(sizeof serial.timeoutMs, 8U);
    EXPECT_EQ(sizeof serial.portKind, 1U);
}

TEST(Layout, Of_the_base_class) {
    const Open<PlainBalance> balance;
    EXPECT_EQ(Offset(balance, balance.serialObject), 8);
    EXPECT_EQ(Offset(balance, balance.portNumber), 16);
    EXPECT_EQ(Offset(balance, balance.baudRate), 20);
    EXPECT_EQ(Offset(balance, balance.parityCode), 24);
    EXPECT_EQ(Offset(balance, balance.dataBits), 28);
    EXPECT_EQ(Offset(balance, balance.stopBitsCode), 32);
    EXPECT_EQ(Offset(balance, balance.flowControlCode), 36);
    EXPECT_EQ(Offset(balance, balance.timeoutSeconds), 40);
    EXPECT_EQ(Offset(balance, balance.protocolCode), 44);
    EXPECT_EQ(Offset(balance, balance.modelFlagA), 48);
    EXPECT_EQ(Offset(balance, balance.portKind), 49);
    EXPECT_EQ(Offset(balance, balance.modelFlagB), 50);
    EXPECT_EQ(Offset(balance, balance.modelFlagC), 51);
    EXPECT_EQ(sizeof(Cwbalance), 56U);
}

TEST(Layout, Of_the_flags_which_are_one_byte_each) {
    const Open<PlainBalance> balance;
    EXPECT_EQ(sizeof balance.modelFlagA, 1U);
    EXPECT_EQ(sizeof balance.portKind, 1U);
    EXPECT_EQ(sizeof balance.modelFlagB, 1U);
    EXPECT_EQ(sizeof balance.modelFlagC, 1U);
}

template <class Driver>
class LayoutOfDriver : public testing::Test {};

TYPED_TEST_SUITE(LayoutOfDriver, driver_types::All, driver_types::Name);

TYPED_TEST(LayoutOfDriver, Has_the_base_class_first_and_no_field_of_its_own) {
    TypeParam driver;
    Cwbalance* base = &driver;
    EXPECT_EQ(static_cast<void*>(base), static_cast<void*>(&driver));
    EXPECT_EQ(sizeof(TypeParam), 56U);
}

/// Says which of its operations was called.
class Slots : public PlainBalance {
 public:
    explicit Slots(std::string& log) : log_(log) {}
    ~Slots() override { log_ += "destructor "; }
    int IsReady() override { return Log("IsReady", 3); }
    int Tare() override { return Log("Tare", 4); }
    int Weight(long mode, double* weight, int* decimals) override {
        *weight = static_cast<double>(mode);
        *decimals = 2;
        return Log("Weight", 5);
    }
    int TareSet(double preset) override { return Log("TareSet " + std::to_string(preset), 6); }
    int RestoreFactorySettings() override { return Log("RestoreFactorySettings", 7); }

 private:
    int Log(const std::string& call, int result) {
        log_ += call + " ";
        return result;
    }

    std::string& log_;
};

/// The function in a slot of the table that an object's first word points to.
template <class Function>
Function* Slot(const Cwbalance* object, int number) {
    const auto* table = *reinterpret_cast<void* const* const*>(object);
    return reinterpret_cast<Function*>(table[number]);
}

TEST(Layout, Of_the_virtual_functions) {
    std::string log;
    auto* balance = new Slots(log);
    double weight = 0.0;
    int decimals = 0;

    // Slots 0 and 1 are the destructor: of the object alone, and with the release of its memory.
    EXPECT_EQ(Slot<int(Cwbalance*)>(balance, 2)(balance), 3);
    EXPECT_EQ(Slot<int(Cwbalance*)>(balance, 3)(balance), 4);
    EXPECT_EQ(
        (Slot<int(Cwbalance*, long, double*, int*)>(balance, 4)(balance, 9, &weight, &decimals)),
        5);
    EXPECT_EQ((Slot<int(Cwbalance*, double)>(balance, 5)(balance, 1.5)), 6);
    EXPECT_EQ(Slot<int(Cwbalance*)>(balance, 6)(balance), 7);
    Slot<void(Cwbalance*)>(balance, 1)(balance);

    EXPECT_EQ(log, "IsReady Tare Weight TareSet 1.500000 RestoreFactorySettings destructor ");
    EXPECT_EQ(weight, 9.0);
    EXPECT_EQ(decimals, 2);
}

}  // namespace
