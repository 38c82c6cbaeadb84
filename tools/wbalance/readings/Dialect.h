#pragma once

#include <string>

#include "Reading.h"

namespace tool {

/// Reads an instrument's whole answer to a weight command for what the instrument meant by it. Pure
/// functions, each in the source file of this folder that is named after it.
using Dialect = Reading (*)(const std::string& answer);

/// MT-SICS: Mettler Toledo generic, PR2003, XS, SB32001.
Reading ReadMtSics(const std::string& answer);
/// Mettler PM: the standard PM protocol, or MT-SICS.
Reading ReadPm(const std::string& answer);
/// Sartorius SBI print lines.
Reading ReadSbi(const std::string& answer);
/// Ohaus Scout Pro and Explorer print lines.
Reading ReadOhaus(const std::string& answer);
/// Radwag frames.
Reading ReadRadwag(const std::string& answer);
/// Kern EW, EG-N, EWB records.
Reading ReadKern(const std::string& answer);
/// Gibertini records of the CRYSTAL protocol.
Reading ReadGibertini(const std::string& answer);
/// Denver Instrument XL-1800 and Setra EL-2000S: a number behind a stability mark.
Reading ReadMarked(const std::string& answer);
/// Scale House ALD tickets.
Reading ReadTicket(const std::string& answer);
/// Whether the answer is a ticket with a weight, and no other instrument's print line.
bool IsTicket(const std::string& answer);

/// A reading that is none, for a reason that a few words tell.
Reading NoWeight(Meaning meaning, const std::string& remark = "");

/// A weight, or OtherUnit when `unit` is not one of the ways in which this instrument writes grams.
Reading WeightIn(const std::string& unit, const std::string& grams, const std::string& digits,
                 Stability stability);

/// A weight whose number the answer ends with, without a unit or a line end, may lack digits.
Reading TruncatedIfCut(const Reading& reading, const std::string& answer);

}  // namespace tool
