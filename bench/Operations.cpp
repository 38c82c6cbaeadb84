#include "Operations.h"

namespace bench {
namespace {

template <class Driver>
class Quick : public Driver {
 public:
    Quick() { Driver::timeoutSeconds = 0; }
};

template <class Driver>
std::unique_ptr<Cwbalance> Make() {
    return std::make_unique<Quick<Driver>>();
}

int Ready(Cwbalance& balance) {
    return balance.IsReady();
}

int Tare(Cwbalance& balance) {
    return balance.Tare();
}

std::function<int(Cwbalance&)> Weight(long mode) {
    return [mode](Cwbalance& balance) {
        double weight = 0.0;
        int decimals = 0;
        return balance.Weight(mode, &weight, &decimals);
    };
}

std::function<int(Cwbalance&)> TareSet(double preset) {
    return [preset](Cwbalance& balance) { return balance.TareSet(preset); };
}

class Table {
 public:
    std::vector<Operation> rows;

    /// The rows that follow belong to this driver.
    template <class Driver>
    void Begin(const std::string& driver, const std::string& line,
               std::vector<Operation::Answer> answers) {
        common_ = {driver, "", line, std::move(answers), Make<Driver>, Ready, {}};
    }

    void Row(const std::string& name, std::function<int(Cwbalance&)> run) {
        Operation row = common_;
        row.name = name;
        row.run = std::move(run);
        rows.push_back(std::move(row));
    }

    void Weights(const std::vector<long>& modes) {
        for (const long mode : modes)
            Row("weight " + std::to_string(mode), Weight(mode));
    }

 private:
    Operation common_;
};

void AddMettler(Table& table) {
    const std::vector<Operation::Answer> sics = {{"@\r\n", "I4 A \"1126493049\"\r\n"},
                                                 {"S\r\n", "S S       0.00 g\r\n"},
                                                 {"SI\r\n", "S S       0.00 g\r\n"},
                                                 {"T\r\n", "T S       0.00 g\r\n"},
                                                 {"TA 5.00 g\r\n", "TA A      5.00 g\r\n"},
                                                 {"Z\r\n", "Z A\r\n"},
                                                 {"DW\r\n", "DW A\r\n"},
                                                 {"D \"READY\"\r\n", "D A\r\n"}};
    table.Begin<WithLineReadiness<WbalanceMettlerToledo>>("mettler-toledo", "2400,7E1", sics);
    table.Row("tare", Tare);
    table.Weights({0, 1, 2});

    table.Begin<WbalanceMettlerPM>("mettler-pm", "600,7E1", sics);
    table.Row("ready", Ready);
    table.Row("tare", Tare);
    table.Weights({0, 1, 2});
    table.Row("preset tare", TareSet(5.0));

    const auto message = [](auto* driver) {
        return driver->DisplayMessage(const_cast<char*>("READY"));
    };
    table.Begin<WbalanceMettlerPR2003>("mettler-pr2003", "2400,7E1", sics);
    table.Row("ready", Ready);
    table.Row("tare", Tare);
    table.Weights({0, 1, 2});
    table.Row("preset tare", TareSet(5.0));
    table.Row("display", [message](Cwbalance& balance) {
        return message(static_cast<WbalanceMettlerPR2003*>(&balance));
    });

    table.Begin<WbalanceMettlerXS>("mettler-xs", "9600,8N1", sics);
    table.Weights({0, 1, 2});

    table.Begin<WbalanceMettlerSB32001>("mettler-sb32001", "2400,7E1", sics);
    table.Row("ready", Ready);
    table.Row("tare", Tare);
    table.Weights({0, 1, 2});
    table.Row("preset tare", TareSet(5.0));
    table.Row("display", [message](Cwbalance& balance) {
        return message(static_cast<WbalanceMettlerSB32001*>(&balance));
    });
}

void AddOthers(Table& table) {
    table.Begin<WithLineReadiness<WbalanceSartorius>>("sartorius", "1200,7O1",
                                                      {{"\x1bP\r\n", "+     0.00 g  \r\n"}});
    table.Row("tare", Tare);
    table.Weights({1});
    table.Row("preset tare", TareSet(0.0));

    table.Begin<WithLineReadiness<WbalanceOHAUS_SPU602>>(
        "ohaus", "2400,7N1",
        {{"SP\r\n", "        0.00 g     \r\n"}, {"P\r\n", "        0.00 g     \r\n"}});
    table.Row("tare", Tare);
    table.Weights({0, 1});

    table.Begin<WbalanceRadwag>("radwag", "9600,7E1",
                                {{"S\r\n", "S A\r\nS        12.345 g  \r\n"},
                                 {"SI\r\n", "SI       12.345 g  \r\n"},
                                 {"T\r\n", "T A\r\nT D\r\n"},
                                 {"Z\r\n", "Z A\r\nZ D\r\n"}});
    table.Row("ready", Ready);
    table.Row("tare", Tare);
    table.Weights({0, 1, 2});

    table.Begin<WithLineReadiness<WbalanceKern_EW_EGN_EWB>>(
        "kern", "1200,8N2",
        {{"T \r\n", "A00\r\n"},
         {"O9\r\n", "A00\r\n+  12.50 G S\r\n"},
         {"O8\r\n", "A00\r\n+  12.50 G U\r\n"}});
    table.Row("tare", Tare);
    table.Weights({1, 2});

    table.Begin<WithLineReadiness<WbalanceGibertini>>(
        "gibertini", "9600,7N1",
        {{"T\r", "      0.00 g   DS\r\n"}, {"B\r", "    123.45 g   DS\r\n"}});
    table.Row("tare", Tare);
    table.Weights({0});

    table.Begin<WithLineReadiness<WbalanceDIC_XL1800>>("denver-xl1800", "2400,8N1",
                                                       {{"?1", "1+    0.00 g\r\n"}});
    table.Row("tare", Tare);
    table.Weights({0, 2});

    table.Begin<WithLineReadiness<WbalanceSetra_EL_2000S>>("setra-el2000s", "2400,8N1",
                                                           {{"#", "1+    0.00 g\r\n"}});
    table.Row("tare", Tare);
    table.Weights({0, 2});

    table.Begin<WithLineReadiness<WbalanceScaleHouseALD>>("scale-house", "2400,7N1",
                                                          {{"P\r\n", "N     0.0 g N\r\n"}});
    table.Row("tare", Tare);
    table.Weights({1});
}

}  // namespace

const std::vector<Operation>& Operations() {
    static const std::vector<Operation> operations = [] {
        Table table;
        AddMettler(table);
        AddOthers(table);
        return table.rows;
    }();
    return operations;
}

}  // namespace bench
