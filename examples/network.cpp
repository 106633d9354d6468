// The network device as it is: it makes no connections yet. A host that is written like this one, which takes null for
// "not connected", needs no change on the day that it does.
#include <xum/xum.h>

#include <cstdlib>
#include <iostream>

int main()
{
    Engine* engine = initEngine(false);         // also starts the network library
    if (engine == nullptr) return EXIT_FAILURE; // log.txt says why
    NetworkDevice* network = engine->createNetworkDevice();
    NetworkObject* connection = network != nullptr ? network->create("localhost:4000") : nullptr;
    std::cout << (connection != nullptr ? "connected\n" : "not connected: playing alone\n");
    if (network != nullptr) network->destroy(connection); // null is fine
    engine->destroyNetworkDevice(network);
    shutdownEngine(engine);
}
