// Data by name, from plain files or from an archive, loaded once by the cache. To try it with an archive:
//
//     xum pack create game.xum data
//     archive game.xum
#include "canvas.h"
#include "example_run.h"

namespace {

const char* const textures[] = {"brick.png",  "bronze.png", "grass.jpg", "leaves.jpg", "limestone.png",
                                "paving.png", "roof.jpg",   "water.png", "wood.png"};

} // namespace

int main(int argc, char** argv)
{
    ExampleRun run(argc, argv, "ARCHIVE");
    Engine* engine = initEngine(false);
    Window* window = engine != nullptr ? engine->createWindow("Archive", 960, 540, false, false) : nullptr;
    RenderDevice* device = window != nullptr ? engine->createRenderDevice(window, "OpenGL") : nullptr;
    if (device == nullptr) return fail("No window with OpenGL 3.2 here"); // log.txt may say more

    ResourceManager* resources = engine->createResourceManager();
    Cache* cache = engine->createCache(resources);
    if (!run.getArgument().empty()) {
        resources->addResourceFile(run.getArgument()); // wins over archives that were added before
        cache->setDataRoot("");                        // names in archives are relative
    }

    // Bytes by name. The cache ends the program for want of a file, so whoever is not sure asks here first.
    std::vector<unsigned char> bytes;
    for (const char* texture : textures) {
        const std::string name = cache->getDataRoot() + cache->getTextureDirectory() + texture;
        if (!resources->load(bytes, name)) return fail("There is no file " + name);
        std::cout << texture << ": " << bytes.size() << " bytes\n";
    }

    {
        Canvas canvas(device);
        while (run.update(engine)) {
            canvas.begin(window->getSize());
            int number = 0;
            for (const char* texture : textures) {
                const int x = 40 + number % 5 * 180;
                const int y = 40 + number / 5 * 240;
                // A name has one identifier, a game asks for it once and keeps it. The texture is loaded when it is
                // first asked for; from then on the answer is one look into a table.
                const int id = cache->getId(texture);
                canvas.draw(cache->getTexture(device, id, false, false), static_cast<float>(x), static_cast<float>(y),
                            160, 160);
                canvas.write(x, y + 168, texture, {0.75f, 0.80f, 0.88f, 1}, 1);
                ++number;
            }
            run.swap(device, window);
        }
    }
    cache->release(device, nullptr, true); // what the cache loaded is the cache's: nothing else to destroy
    engine->destroyCache(cache);
    engine->destroyRenderDevice(device);
    engine->destroyResourceManager(resources);
    engine->destroyWindow(window);
    shutdownEngine(engine);
}
