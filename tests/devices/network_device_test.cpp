#include <xum/devices/network_device.h>

#include "engine_fixtures.h"

#include <string>

namespace {

class NetworkDeviceImplementation : public EngineFixture {
protected:
    void SetUp() override
    {
        EngineFixture::SetUp();
        ASSERT_FALSE(HasFatalFailure());
        network = engine->createNetworkDevice();
        ASSERT_NE(network, nullptr);
    }

    void TearDown() override
    {
        engine->destroyNetworkDevice(network);
        EngineFixture::TearDown();
    }

    NetworkDevice* network = nullptr;
};

/// Counts how many there are.
class CountingObject : public NetworkObject {
public:
    explicit CountingObject(int& count) : count(count) { ++count; }
    ~CountingObject() override { --count; }

    CountingObject(const CountingObject&) = delete;
    CountingObject& operator=(const CountingObject&) = delete;

private:
    int& count;
};

} // namespace

TEST_F(NetworkDeviceImplementation, createsNothingWhateverItIsGiven)
{
    for (const std::string& address : {std::string(), std::string("localhost"), std::string("127.0.0.1:80"),
                                       std::string("\0", 1), std::string(100000, 'x')})
        EXPECT_EQ(network->create(address), nullptr);
}

TEST_F(NetworkDeviceImplementation, destroyDeletesTheObject)
{
    int count = 0;
    NetworkObject* first = new CountingObject(count);
    NetworkObject* second = new CountingObject(count);
    network->destroy(first);
    EXPECT_EQ(count, 1);
    network->destroy(second);
    EXPECT_EQ(count, 0);
}

TEST_F(NetworkDeviceImplementation, destroyAcceptsNull)
{
    network->destroy(nullptr);
    network->destroy(network->create("localhost"));
}

TEST_F(NetworkDeviceImplementation, devicesAreIndependent)
{
    NetworkDevice* other = engine->createNetworkDevice();
    EXPECT_NE(other, network);
    engine->destroyNetworkDevice(other);
    EXPECT_EQ(network->create("localhost"), nullptr);
}
