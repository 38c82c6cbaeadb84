#pragma once

#include "ScriptedTest.h"

/// The transport with its fields within a test's reach.
class OpenSerialObject : public CSerialObject {
 public:
    using CSerialObject::port;
    using CSerialObject::portKind;
    using CSerialObject::status;
    using CSerialObject::timeoutMs;
};
