#pragma once

#include <xum/devices/network_device.h>

class NetworkDeviceImplementation final : public NetworkDevice {
public:
    NetworkObject* create(const std::string& address) override;
    void destroy(NetworkObject* object) override;
};
