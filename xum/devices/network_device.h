#pragma once

#include <xum/engine/export.h>

#include <string>

/// What a network device makes.
class XUM_API NetworkObject {
public:
    virtual ~NetworkObject() = default;
};

/// The place for networking. The engine starts and ends SDL_net, which a host may call itself; this device makes
/// nothing yet. Made by Engine::createNetworkDevice, given back to Engine::destroyNetworkDevice. Slot order is ABI.
class XUM_API NetworkDevice {
public:
    /// Always null.
    virtual NetworkObject* create(const std::string& address) = 0;

    /// Deletes the object; null is accepted.
    virtual void destroy(NetworkObject* object) = 0;

protected:
    ~NetworkDevice() = default;
};
