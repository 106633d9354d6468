#pragma once

#include <xum/engine/export.h>

#include <list>
#include <string>

/// A linked program. Made by RenderDevice::createProgram, given back to RenderDevice::destroyProgram. Slot order is
/// ABI.
class XUM_API Program {
public:
    /// The attribute names as they were given: the position in the list is the location.
    virtual const std::list<std::string>& getAttributes() = 0;

    /// The output names as they were given, "(1)" included.
    virtual const std::list<std::string>& getOutputs() = 0;

    virtual ~Program() = default;
};
