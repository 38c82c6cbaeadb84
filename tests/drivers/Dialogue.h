#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "Line.h"

namespace scripted {

/// The transcript in the words of an instrument's manual page: what the transport does on its own
/// account is left out or shortened, and only where it stands exactly as expected.
///
/// - "opening": the port is opened with the settings and cleared; "opening again": it was held.
/// - "silent read": three attempts of 1 s each in which nothing comes.
/// - Left out: waits, and the transport's traces of commands, answers and attempts.
class Dialogue {
 public:
    /// @param settings the transcript of the five settings and their trace
    explicit Dialogue(const std::vector<std::string>& settings)
        : opening_{"open /dev/ttyS0", R"(trace "/dev/ttyS0 OPENED SUCCESSFULLY!\n\n")"},
          openingAgain_{R"(trace "COM0 alread open!")"} {
        for (std::vector<std::string>* form : {&opening_, &openingAgain_}) {
            form->insert(form->end(), settings.begin(), settings.end());
            form->push_back("clear input");
        }
    }

    std::vector<std::string> Of(const Line& line) const {
        std::vector<std::string> steps = line.Transcript();
        Shorten(steps, opening_, "opening");
        Shorten(steps, openingAgain_, "opening again");
        Shorten(steps, silentRead_, "silent read");
        steps.erase(std::remove_if(steps.begin(), steps.end(), IsTransport), steps.end());
        return steps;
    }

 private:
    static void Shorten(std::vector<std::string>& steps, const std::vector<std::string>& form,
                        const std::string& name) {
        for (auto at = steps.begin();;) {
            at = std::search(at, steps.end(), form.begin(), form.end());
            if (at == steps.end()) return;
            *at = name;
            at = steps.erase(at + 1, at + static_cast<std::ptrdiff_t>(form.size()));
        }
    }

    static bool IsTransport(const std::string& step) {
        for (const char* start : {"wait ", "trace \"<== ", "trace \"Timeout elapsed in scale read",
                                  "trace \"Read from scale: "}) {
            if (step.rfind(start, 0) == 0) return true;
        }
        return false;
    }

    std::vector<std::string> opening_;
    std::vector<std::string> openingAgain_;
    std::vector<std::string> silentRead_{
        "wait 1000: silence",
        R"(trace "Timeout elapsed in scale read (attempt n. 1)\n")",
        "wait 1000: silence",
        R"(trace "Timeout elapsed in scale read (attempt n. 2)\n")",
        "wait 1000: silence",
        R"(trace "Timeout elapsed in scale read (attempt n. 3)\n")",
        R"(trace "Read from scale:  (time elapsed: 3000 ms)\n")"};
};

}  // namespace scripted
