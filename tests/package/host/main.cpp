#include <xum/xum.h>

#include <iostream>
#include <memory>

// Runs a frame, reads a picture from the data directory, and prints the version and that directory.
int main()
{
    Engine* engine = initEngine(false);
    if (engine == nullptr) return 1;
    if (!engine->update()) return 2;
    std::cout << engine->getVersion() << '\n' << defaultDataRoot() << '\n';
    const std::unique_ptr<Image> image(loadImage(defaultDataRoot() + "textures/brick.png"));
    if (image == nullptr) return 3;
    shutdownEngine(engine);
    return 0;
}
