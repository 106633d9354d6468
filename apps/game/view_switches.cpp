#include "view_switches.h"

#include <xum/devices/input_device.h>

bool Switch::isThrown(InputDevice& input)
{
    const bool isThrown = input.wasPressed(key) && !wasDown;
    wasDown = input.isDown(key);
    return isThrown;
}

ViewSwitches::ViewSwitches(InputDevice& input) : input(input), wireframeKey(input.getKeyFromName("Tab")) {}

void ViewSwitches::handle(Presentation& presentation)
{
    SceneRenderer& renderer = presentation.getRenderer();
    Layers& layers = presentation.getLayers();
    if (wireframeKey.isThrown(input)) isWireframe = !isWireframe;
    if (cullingKey.isThrown(input)) renderer.setCulling(!renderer.isCullingOn());
    if (occlusionKey.isThrown(input)) renderer.setOcclusionView(!renderer.isOcclusionViewOn());
    if (lampKey.isThrown(input)) renderer.setLamp(!renderer.isLampShining());
    if (boxKey.isThrown(input)) layers.debugShapes = !layers.debugShapes;
    if (filmKey.isThrown(input)) layers.effects = !layers.effects;
    if (textKey.isThrown(input)) layers.text = !layers.text;
}
