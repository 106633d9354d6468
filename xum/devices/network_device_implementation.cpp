#include <xum/devices/network_device_implementation.h>

NetworkObject* NetworkDeviceImplementation::create(const std::string& /*address*/)
{
    return nullptr;
}

void NetworkDeviceImplementation::destroy(NetworkObject* object)
{
    delete object;
}
