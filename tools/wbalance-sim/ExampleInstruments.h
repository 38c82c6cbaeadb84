#pragma once

#include <string>

/// The text of a help, in which {balance} and {other} stand for two instruments and {switch} for a
/// switch of the first. What the texts say holds of any.
std::string WithExamples(std::string text);
